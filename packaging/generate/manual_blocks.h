#pragma once

#include <string>
#include <string_view>

namespace krvcmd {

// Parts of the manual pages:
//
//   options               the options before the command, with their help
//   commands              every command with its help
//   addressing            the keywords that address items, with their help
//   syntax COMMAND        the syntax lines of the command's help
//   addresses COMMAND     a sentence that names the addressing keywords of the command
//   parameters COMMAND    its other parameters, with their help
//   columns               every column: letter, title, description
//   defaults              the default columns and order of each query
//   words FIELD           the words of a layout file for content, finalization or (type of) volume
//   media                 the media types of a layout file: number, what they allow, capacity
//   file PATH             a file of the project, as an example
//   prototypes            the client library's functions, as in C
//   functions             the same, section by section, with their descriptions
//   records               its records, field by field
//   codes                 its codes that mean something to krvcmd, and what krvcmd does
//
// `argument` is empty for a part without one. Throws std::runtime_error for an unknown part, command or file.
std::string ManualBlock(std::string_view part, std::string_view argument);

}  // namespace krvcmd
