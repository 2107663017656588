#pragma once

#include <cstdint>

namespace Ostrel::UI::Console {

// The two streams that a console writer writes to.
enum class Stream : uint8_t { StandardOutput, StandardError };

}  // namespace Ostrel::UI::Console

// What differs from system to system: the terminal and its width, the character set of texts and the width of
// characters, and pipes without a reader.
namespace Ostrel::UI::Console::Platform {

// Whether the stream ends at a terminal, not in a file or a pipe.
bool IsTerminal(Stream stream);

// Whether a terminal may decode UTF-8, and whether it may take every byte for a character. Both hold where
// the character set of the terminal is not known.
bool TerminalMayDecodeUtf8();
bool TerminalMayDecodeBytes();

// The code point that a terminal that takes every byte for a character shows for the byte; 0 when the byte is
// only a part of a character.
char32_t CharacterOfByte(uint8_t byte);

// The width of the screen buffer of the console on standard output, in character cells; 0 when standard
// output is no console.
int32_t ScreenBufferWidth();

// Whether texts are in UTF-8 and terminals show them as such. Otherwise every byte takes one position.
bool ReadsUtf8();

// The positions that a terminal uses for a character of a UTF-8 text: 0, 1 or 2; 1 when the system does not
// know the character.
int CharacterWidth(char32_t codePoint);

// Turns writing to a pipe without a reader into an ordinary write error; by default it may end the process.
void SurviveBrokenPipes();

// The same for writing beyond the largest size that files of this process may have (ulimit -f).
void SurviveFileSizeLimit();

// Whether a write to the stream that failed with the errno number `error` (0: none was left) means that the
// stream is a pipe without a reader.
bool IsBrokenPipe(Stream stream, int error);

// The errno number to report for a write that failed with `error`. Never 0. Replaces numbers that the C
// runtime sets without saying what happened.
int WriteError(int error);

}  // namespace Ostrel::UI::Console::Platform
