#include "korvo/foundation/stdio_file_mem.h"

namespace {

// The memory form keeps each character as one 16-bit unit, little endian,
// whatever the size of wchar_t on the platform.
void AppendUnits(CMemFile& mem, const wchar_t* text) {
  unsigned char chunk[512];
  unsigned used = 0;
  for (const wchar_t* p = text; *p; ++p) {
    const auto unit = static_cast<uint16_t>(*p);
    chunk[used++] = static_cast<unsigned char>(unit & 0xFF);
    chunk[used++] = static_cast<unsigned char>(unit >> 8);
    if (used == sizeof chunk) {
      mem.Write(chunk, used);
      used = 0;
    }
  }
  if (used) mem.Write(chunk, used);
}

}  // namespace

CStdioFileMem::CStdioFileMem() : strom(nullptr), minne(0) {}

CStdioFileMem::~CStdioFileMem() {
  if (strom) fil.Close();
}

int CStdioFileMem::Open(const wchar_t* path, unsigned flags, void* exception) {
  if (minne) return 1;
  if (strom) fil.Close();
  strom = nullptr;
  if (!fil.Open(path, flags, exception)) return 0;
  strom = &fil;
  return 1;
}

void CStdioFileMem::Close() {
  if (minne) {
    AppendUnits(minnesfil, L"EOF\r\n");
    minnesfil.SeekToBegin();
    return;
  }
  if (strom) fil.Close();
  strom = nullptr;
}

int CStdioFileMem::ReadString(std::wstring& line) {
  if (minne || !strom) return 0;
  return fil.ReadString(line);
}

void CStdioFileMem::WriteString(const wchar_t* line) {
  if (minne) {
    AppendUnits(minnesfil, line);
  } else if (strom) {
    fil.WriteString(line);
  }
}

void CStdioFileMem::SeekToBegin() {
  if (minne) {
    minnesfil.SeekToBegin();
  } else if (strom) {
    fil.SeekToBegin();
  }
}
