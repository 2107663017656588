#include <iostream>
#include <string>
#include <vector>

#include "tools/krvadm/tool.h"

int main(int argc, char** argv) {
    return embedded::tools::RunAdministration(std::vector<std::string>(argv + 1, argv + argc),
                                              {std::cout, std::cerr});
}
