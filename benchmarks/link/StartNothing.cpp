// The least that a program can be.
int main() {}
