#include "backends/occt/read/input_files.h"

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <utility>

#include "backends/occt/read/gzip.h"
#include "backends/occt/read/input_file.h"

namespace occt {
namespace {

namespace fs = std::filesystem;
using HPS::Exchange::ImportCause;

bool isFullPath(const std::string& name) {
    const auto isLetter = [](char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); };
    if (name.empty()) return false;
    return name[0] == '/' || (name.size() > 1 && isLetter(name[0]) && name[1] == ':') ||
           name.find("://") != std::string::npos;
}

bool isBelow(const fs::path& path, const fs::path& folder) {
    const auto [end, rest] = std::mismatch(folder.begin(), folder.end(), path.begin(), path.end());
    return end == folder.end() && rest != path.end();
}

}  // namespace

InputFiles::InputFiles(const std::string& path, const InputLimits& limits) : limits_(limits) {
    std::error_code error;
    const fs::path canonical = fs::canonical(path, error);
    folder_ = error ? std::string() : canonical.parent_path().string();
    files_.push_back({});
    files_.back().path = path;
    open(files_.back());
    canonical_.push_back(canonical.string());
    known_[canonical.string()] = 0;
    // What the files behind refer to comes to the end of the list.
    for (std::size_t i = 0; i < files_.size(); ++i) follow(i);
}

void InputFiles::open(InputFile& file) {
    file.cause = readInput(file.path, file.bytes);
    const bool packed = !file.cause && isGzip(file.bytes);
    if (packed) {
        std::string bytes;
        file.cause = unpackGzip(file.path, file.bytes, kLargestFileBytes, bytes);
        file.bytes = std::move(bytes);
    }
    if (file.cause) {
        file.bytes.clear();
        return;
    }
    if (file.bytes.starts_with("\xEF\xBB\xBF")) file.bytes.erase(0, 3);
    file.found = recognise(file.path, file.bytes, packed);
    bytes_ += file.bytes.size();
}

void InputFiles::follow(std::size_t from) {
    const Format* format = files_[from].found.format;
    if (!format || !format->otherFiles) return;
    for (const std::string& name : format->otherFiles(files_[from].bytes)) {
        if (files_[from].links.count(name) != 0) continue;
        FileLink link = resolve(from, name);
        files_[from].links[name] = std::move(link);
    }
}

FileLink InputFiles::resolve(std::size_t from, const std::string& name) {
    std::string relative = name;
    std::replace(relative.begin(), relative.end(), '\\', '/');
    if (relative.empty() || relative.find('\0') != std::string::npos) {
        return {FileLink::kNone, "is no name of a file"};
    }
    if (isFullPath(relative)) {
        return {FileLink::kNone,
                "is a full path; only files beside the one that refers to them "
                "and below are read"};
    }
    const fs::path wanted =
        (fs::path(canonical_[from]).parent_path() / relative).lexically_normal();
    const FileLink outside = {FileLink::kNone, "lies outside the folder of " + files_[0].path};
    if (!isBelow(wanted, folder_)) return outside;
    std::error_code error;
    const fs::path canonical = fs::canonical(wanted, error);
    if (error) return {FileLink::kNone, "does not exist"};
    if (!isBelow(canonical, folder_)) return outside;

    const auto known = known_.find(canonical.string());
    if (known != known_.end()) return {known->second, {}};
    const std::size_t depth = files_[from].depth + 1;
    if (depth > limits_.depth || files_.size() > limits_.files || bytes_ > limits_.bytes) {
        return {FileLink::kNone, "is left out: the file refers to too many others"};
    }
    InputFile file;
    // Sentences call it as the user would: beside the name that the user gave.
    file.path =
        (fs::path(files_[0].path).parent_path() / wanted.lexically_relative(folder_)).string();
    file.depth = depth;
    open(file);
    const std::size_t number = files_.size();
    known_[canonical.string()] = number;
    canonical_.push_back(canonical.string());
    files_.push_back(std::move(file));
    return {number, {}};
}

const FileLink& InputFiles::link(std::size_t file, const std::string& name) const {
    static const FileLink none = {FileLink::kNone, "was not looked for"};
    const auto found = files_[file].links.find(name);
    return found == files_[file].links.end() ? none : found->second;
}

ImportCause InputFiles::unknownFormat(const InputFile& file) {
    return {"not-this-format",
            file.path + " is of no format that is read; those are " + formatNames() + "."};
}

}  // namespace occt
