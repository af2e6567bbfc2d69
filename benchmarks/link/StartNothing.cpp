// The minimal program.
int main() {}
