// An output file that appears whole or not at all. The bytes go to a temporary file beside the
// destination (same directory, so the final rename stays on one file system); commit() renames it
// over the destination. Until then, and whenever commit() fails, the destructor removes the
// temporary, so a refused or failed run leaves nothing behind.
#ifndef QUORIMP_TOOL_OUTPUT_FILE_H
#define QUORIMP_TOOL_OUTPUT_FILE_H

#include <cstdio>
#include <string>

namespace quorimp_tool {

class OutputFile {
public:
    // Throws ToolError naming `path` when the temporary cannot be made.
    explicit OutputFile(const std::string& path);
    ~OutputFile();
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;

    std::FILE* stream() { return stream_; }
    const std::string& path() const { return path_; }

    // Flushes, closes and renames into place; throws ToolError naming the path on failure.
    void commit();

private:
    std::string path_;
    std::string temporary_path_;
    std::FILE* stream_ = nullptr;
    bool committed_ = false;
};

}  // namespace quorimp_tool

#endif
