#include <iostream>
#include <string>
#include <vector>

#include "tools/krvsim/tool.h"

int main(int argc, char** argv) {
    return embedded::tools::RunTool(std::vector<std::string>(argv + 1, argv + argc), {std::cout, std::cerr});
}
