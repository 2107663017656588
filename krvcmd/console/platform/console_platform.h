#pragma once

#include <cstdint>

namespace Ostrel::UI::Console {

// Where a console writer puts its text.
enum class Stream : uint8_t { StandardOutput, StandardError };

}  // namespace Ostrel::UI::Console

namespace Ostrel::UI::Console::Platform {

// Whether the stream ends at a terminal, not in a file or a pipe.
bool IsTerminal(Stream stream);

// Whether there are terminals that act upon single bytes from 0x80 to 0x9F, as those of 8-bit ISO character
// sets do.
bool ObeysSingleBytes();

// The width, in character cells, of the console's screen buffer on standard output; 0 when standard output
// is no console.
int32_t ScreenBufferWidth();

// Whether texts are UTF-8 and terminals show them so. Where they are not, every byte takes one position.
bool ReadsUtf8();

// The positions that a terminal uses for a character of a UTF-8 text: 0, 1 or 2; 1 for one that it does not
// know.
int CharacterWidth(char32_t codePoint);

// Makes writing into a pipe without a reader an ordinary write error instead of the end of the process.
void SurviveBrokenPipes();

// Whether a write error (an errno number) says that the reader of the pipe went away.
bool IsBrokenPipe(int error);

}  // namespace Ostrel::UI::Console::Platform
