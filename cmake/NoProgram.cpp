// What a target that only compiles headers needs to be one.
int main() {}
