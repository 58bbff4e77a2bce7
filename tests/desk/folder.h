// A folder of its own, in which commands run as a user gives them.
#pragma once
#include <sys/wait.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <string>

namespace zelvo {

inline std::string content_of(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

struct Folder {
  std::string path = (std::filesystem::temp_directory_path() / "zelvo-desk-XXXXXX").string();
  std::string said;  // by the last command, on both streams
  Folder() { path = mkdtemp(path.data()); }
  Folder(const Folder&) = delete;
  ~Folder() { std::filesystem::remove_all(path); }
  void write(const std::string& name, const std::string& text) const {
    std::ofstream(path + "/" + name, std::ios::binary) << text;
  }
  std::string read(const std::string& name) const { return content_of(path + "/" + name); }
  // Status of a command.
  int run(const std::string& command) {
    const int status = std::system(("cd " + path + " && " + command + " >said 2>&1").c_str());
    said = read("said");
    std::filesystem::remove(path + "/said");
    return WEXITSTATUS(status);
  }
  int desk(const std::string& arguments) { return run(ZELVO_DESK_PROGRAM " " + arguments); }
  std::map<std::string, std::string> files() const {
    std::map<std::string, std::string> all;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(path))
      all[entry.path().lexically_relative(path)] =
          entry.is_regular_file() ? content_of(entry.path()) : "";
    return all;
  }
};

}  // namespace zelvo
