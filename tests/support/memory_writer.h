#pragma once

#include <map>
#include <memory>
#include <set>
#include <string>
#include <utility>

#include "platform/os/file_writer.h"

namespace support {

/// Files in memory.
class MemoryWriter : public os::FileWriter {
public:
    std::unique_ptr<os::OutputFile> create(const std::wstring& path) override {
        if (refused.count(path)) return nullptr;
        files[path].clear();
        return std::make_unique<File>(*this, path);
    }
    bool takeFailure() override { return std::exchange(failed, false); }

    std::map<std::wstring, std::string> files;
    std::set<std::wstring> refused;
    /// Bytes that fit on the disk.
    std::size_t room = static_cast<std::size_t>(-1);
    bool failed = false;
    int closed = 0;

private:
    struct File : os::OutputFile {
        File(MemoryWriter& owner, std::wstring path) : disk(owner), name(std::move(path)) {}
        bool write(std::string_view bytes) override {
            const bool fits = bytes.size() <= disk.room;
            if (!fits) disk.failed = true;
            const auto taken = bytes.substr(0, disk.room);
            disk.room -= taken.size();
            disk.files[name] += taken;
            return fits;
        }
        bool close() override {
            ++disk.closed;
            return true;
        }
        MemoryWriter& disk;
        std::wstring name;
    };
};

}  // namespace support
