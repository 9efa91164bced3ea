// A project directory with its field folder Dbf, for tests that read and
// write whole point files, with every notice caught.
#ifndef KORVO_TESTUTIL_POINT_PROJECT_H_
#define KORVO_TESTUTIL_POINT_PROJECT_H_

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "korvo/context/proj_path.h"
#include "korvo/testutil/notices.h"
#include "korvo/testutil/temp_dir.h"

namespace korvo::test {

// The lines of a point file before its first method block: position, ground
// level, the sounding's head and the point's own GUID.
inline std::string PointHead(const std::string& z = "12.340000") {
  return "6500100.250000\r\n1500200.750000\r\n" + z +
         "\r\n9999999.900000\r\n0.000000\r\n0.000000 0 90.000000\r\n*\r\n97\r\n40 0\r\n*\r\n99\r\n"
         "GUID 0f8fad5b-d9cb-469f-a165-70867728950e\r\n";
}

class PointProjectTest : public testing::Test {
 protected:
  PointProjectTest() {
    std::filesystem::create_directory(dir_.path() / "Dbf");
    proj_.SetPath(dir_.wpath().c_str());
  }

  void WriteField(const std::string& name, const std::string& bytes) const {
    dir_.Write("Dbf/" + name, bytes);
  }
  std::string ReadField(const std::string& name) const { return dir_.Read("Dbf/" + name); }

  TempDir dir_;
  CProjPath proj_;
  Notices notices_;
};

}  // namespace korvo::test

#endif  // KORVO_TESTUTIL_POINT_PROJECT_H_
