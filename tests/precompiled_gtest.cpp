// A program only because a precompiled header has to belong to something that is compiled as the tests are.
int main() {
    return 0;
}
