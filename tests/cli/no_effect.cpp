// A library that loads but is no effect.
extern "C" __attribute__((visibility("default"))) int Unrelated() {
  return 0;
}
