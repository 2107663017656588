// What every C++ program costs before it does anything: the dynamic loader and the standard library.
#include <iostream>

int main() {
    std::cout.flush();
}
