// Writes a new point to memory through the installed library and checks that
// the buffer starts with the section mark.
#include <korvo/korvo.h>

#include <cstdio>

int main() {
  CKorvoSnd point;
  point.SetMemFile(1);
  point.Uppdat(nullptr, nullptr);
  CMemFile* mem = point.MemFile();
  unsigned char first[2] = {0, 0};
  if (mem == nullptr || mem->Read(first, 2) != 2 || first[0] != '#') {
    std::puts("consumer: unexpected memory form");
    return 1;
  }
  std::printf("consumer: %llu bytes\n", static_cast<unsigned long long>(mem->GetLength()));
  return 0;
}
