#include "output_file.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "tool_error.h"

namespace quorimp_tool {

namespace {

std::string reason(const char* what) {
    return std::string(what) + ": " + std::strerror(errno);
}

// mkstemp makes files readable by the owner only; the result gets the usual 0666 less the umask.
mode_t usual_file_mode() {
    const mode_t mask = ::umask(0);
    ::umask(mask);
    return 0666 & ~mask;
}

}  // namespace

OutputFile::OutputFile(const std::string& path) : path_(path) {
    const std::size_t slash = path.rfind('/');
    const std::string directory = slash == std::string::npos ? "" : path.substr(0, slash + 1);
    const std::string name = slash == std::string::npos ? path : path.substr(slash + 1);
    temporary_path_ = directory + "." + name + ".tmp-XXXXXX";

    std::vector<char> pattern(temporary_path_.begin(), temporary_path_.end());
    pattern.push_back('\0');
    const int descriptor = ::mkstemp(pattern.data());
    if (descriptor < 0) {
        throw ToolError(path_ + ": " + reason("cannot create the output file"));
    }
    temporary_path_ = pattern.data();
    if (::fchmod(descriptor, usual_file_mode()) != 0 ||
        (stream_ = ::fdopen(descriptor, "wb")) == nullptr) {
        const std::string message = path_ + ": " + reason("cannot create the output file");
        ::close(descriptor);
        ::unlink(temporary_path_.c_str());
        throw ToolError(message);
    }
}

OutputFile::~OutputFile() {
    if (stream_ != nullptr) {
        std::fclose(stream_);
    }
    if (!committed_) {
        ::unlink(temporary_path_.c_str());
    }
}

void OutputFile::commit() {
    const bool flushed = std::fflush(stream_) == 0 && !std::ferror(stream_);
    const int flush_error = errno;
    const bool closed = std::fclose(stream_) == 0;
    stream_ = nullptr;
    if (!flushed || !closed) {
        if (!flushed) {
            errno = flush_error;
        }
        throw ToolError(path_ + ": " + reason("cannot write the output file"));
    }
    if (std::rename(temporary_path_.c_str(), path_.c_str()) != 0) {
        throw ToolError(path_ + ": " + reason("cannot write the output file"));
    }
    committed_ = true;
}

}  // namespace quorimp_tool
