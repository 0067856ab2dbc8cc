// SPDX-License-Identifier: MIT
#include "helper/ModelFile.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <memory>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace sayloft::helper {
namespace {

constexpr std::string_view ggufMagic = "GGUF";
constexpr std::string_view starterMagic = "sayloft starter model 1";
constexpr std::size_t longestStarterModel = std::size_t{64} * 1024;

struct CloseFile {
    void operator()(FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<FILE, CloseFile>;

Problem systemProblem(const std::string& path) {
    return {"cannot read the model " + path + ": " + std::strerror(errno)};
}

// Without O_NONBLOCK, opening a named pipe would wait for a writer for ever.
Result<File> openPlainFile(const std::string& path) {
    const int descriptor = ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (descriptor < 0)
        return systemProblem(path);
    File file(::fdopen(descriptor, "rb"));
    if (!file) {
        ::close(descriptor);
        return systemProblem(path);
    }
    struct stat status = {};
    if (::fstat(descriptor, &status) != 0)
        return systemProblem(path);
    if (!S_ISREG(status.st_mode))
        return Problem{"the model " + path + " is not a file"};
    return file;
}

Result<std::string> readBeginning(const std::string& path) {
    Result<File> opened = openPlainFile(path);
    if (auto* problem = std::get_if<Problem>(&opened))
        return *problem;
    FILE* file = std::get<File>(opened).get();
    std::string beginning(longestStarterModel + 1, '\0');
    beginning.resize(std::fread(beginning.data(), 1, beginning.size(), file));
    if (std::ferror(file) != 0)
        return systemProblem(path);
    return beginning;
}

std::string_view trimmed(std::string_view text) {
    constexpr std::string_view blanks = " \t\r";
    const std::size_t begin = text.find_first_not_of(blanks);
    if (begin == std::string_view::npos)
        return {};
    return text.substr(begin, text.find_last_not_of(blanks) - begin + 1);
}

std::string_view takeLine(std::string_view& text) {
    const std::size_t end = text.find('\n');
    const std::string_view line = text.substr(0, end);
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    return trimmed(line);
}

struct Entry {
    std::string_view name;
    std::string* value;
};

// False for a line that is not `name = /absolute/path`, and for a name given twice.
bool assign(const std::array<Entry, 3>& entries, std::string_view line) {
    const std::size_t equals = line.find('=');
    if (equals == std::string_view::npos)
        return false;
    const std::string_view name = trimmed(line.substr(0, equals));
    const std::string_view value = trimmed(line.substr(equals + 1));
    if (!value.starts_with('/') || value.find('\0') != std::string_view::npos)
        return false;
    for (const Entry& entry : entries) {
        if (entry.name != name)
            continue;
        if (!entry.value->empty())
            return false;
        *entry.value = value;
        return true;
    }
    return false;
}

Problem missing(const std::string& path) {
    return {path + " is missing or unreadable, install the package pocketsphinx-en-us"};
}

bool isReadableFile(const std::string& path) {
    std::error_code ignored;
    return std::filesystem::is_regular_file(path, ignored) && ::access(path.c_str(), R_OK) == 0;
}

}  // namespace

Result<StarterModel> parseStarterModel(std::string_view text) {
    if (takeLine(text) != starterMagic)
        return Problem{"it does not begin with \"" + std::string(starterMagic) + "\""};
    StarterModel model;
    const std::array<Entry, 3> entries{{{"acoustic-model", &model.acousticModel},
                                        {"language-model", &model.languageModel},
                                        {"dictionary", &model.dictionary}}};
    for (int number = 2; !text.empty(); ++number) {
        const std::string_view line = takeLine(text);
        if (line.empty() || line.starts_with('#'))
            continue;
        if (!assign(entries, line))
            return Problem{"its line " + std::to_string(number) + " is not understood"};
    }
    for (const Entry& entry : entries) {
        if (entry.value->empty())
            return Problem{"it names no " + std::string(entry.name)};
    }
    return model;
}

Result<ModelFile> inspectModelFile(const std::string& path) {
    Result<std::string> beginning = readBeginning(path);
    if (auto* problem = std::get_if<Problem>(&beginning))
        return *problem;
    const std::string& content = std::get<std::string>(beginning);
    if (content.starts_with(ggufMagic))
        return ModelFile(GgufModel{});
    if (!content.starts_with(starterMagic))
        return Problem{"the model " + path + " is neither a GGUF file nor a starter model"};
    if (content.size() > longestStarterModel)
        return Problem{"the starter model " + path + " is too long"};
    Result<StarterModel> starter = parseStarterModel(content);
    if (auto* problem = std::get_if<Problem>(&starter))
        return Problem{"the starter model " + path + " is damaged: " + problem->reason};
    return ModelFile(std::get<StarterModel>(starter));
}

Result<std::monostate> checkStarterModel(const StarterModel& model) {
    for (const std::string& path : {model.acousticModel + "/mdef", model.acousticModel + "/means",
                                    model.languageModel, model.dictionary}) {
        if (!isReadableFile(path))
            return missing(path);
    }
    return std::monostate{};
}

}  // namespace sayloft::helper
