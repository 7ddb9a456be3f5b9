// Only carries the headers that tests share, compiled once for all of them.
int main() {
    return 0;
}
