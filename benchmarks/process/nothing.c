/* Starts and exits: what the libraries that a program is linked to cost before it does anything. */
int main(void) {
  return 0;
}
