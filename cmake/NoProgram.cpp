// The source of targets that are there for their headers only.
int main() {}
