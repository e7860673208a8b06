// make_photo WIDTH HEIGHT OUTPUT.ppm: the picture that the comparisons of run.py start from.

#include <cstdio>
#include <cstdlib>
#include <exception>

#include "photo.h"

int main(int argc, char** argv) {
  if (argc != 4) {
    std::fputs("usage: make_photo WIDTH HEIGHT OUTPUT.ppm\n", stderr);
    return 64;
  }
  try {
    vantrel::bench::writePhoto(vantrel::bench::makePhoto(std::strtoll(argv[1], nullptr, 10),
                                                         std::strtoll(argv[2], nullptr, 10)),
                               argv[3]);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
  }
  return 0;
}
