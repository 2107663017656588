#include <iostream>
#include <string>
#include <vector>

#include "simulator/krvsim/tool.h"

int main(int argc, char** argv) {
    return krvsim::RunTool(std::vector<std::string>(argv + 1, argv + argc), {std::cout, std::cerr});
}
