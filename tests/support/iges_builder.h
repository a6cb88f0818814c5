#pragma once

#include <string>
#include <vector>

namespace support {

struct IgesFields {
    int form = 0;
    int transform = 0;  ///< number of a matrix
    std::string label = {};
    int subscript = 0;
};

/// Writes IGES files in fixed lines, right or wrong, from parameters as text.
class IgesBuilder {
public:
    /// Adds an entity; its number in the directory: 1, 3, 5, ... `parameters` stand behind the
    /// type, without the end mark.
    int add(int type, const std::string& parameters, const IgesFields& fields = {});

    /// The file. `global` is the whole global section; empty: one with millimetres.
    std::string write(const std::string& global = {}) const;

    /// A global section with that unit.
    static std::string unit(int flag, const std::string& name = "MM");

    /// A file without entities.
    static std::string onlyGlobal(const std::string& global);

private:
    struct Entry {
        int type = 0;
        IgesFields fields;
        std::string parameters;
    };
    std::vector<Entry> entries_;
};

}  // namespace support
