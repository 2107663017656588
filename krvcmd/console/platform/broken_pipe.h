#pragma once

namespace Ostrel::UI::Console::Platform {

// Makes writing into a pipe without a reader an ordinary write error instead of the end of the process.
void SurviveBrokenPipes();

// Whether a write error (an errno number) says that the reader of the pipe went away.
bool IsBrokenPipe(int error);

}  // namespace Ostrel::UI::Console::Platform
