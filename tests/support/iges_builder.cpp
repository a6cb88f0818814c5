#include "tests/support/iges_builder.h"

#include <algorithm>
#include <cstdio>

namespace support {
namespace {

constexpr std::size_t kDataColumns = 72;
constexpr std::size_t kParameterColumns = 64;

std::string number(int value, const char* form) {
    char text[32];
    std::snprintf(text, sizeof text, form, value);
    return text;
}

std::string line(std::string data, char section, int count) {
    data.resize(kDataColumns, ' ');
    return data + section + number(count, "%7d") + "\n";
}

std::string cut(const std::string& text, char section, int& count) {
    std::string out;
    for (std::size_t at = 0; at < text.size(); at += kDataColumns) {
        out += line(text.substr(at, kDataColumns), section, ++count);
    }
    return out;
}

std::string field(int value) {
    return number(value, "%8d");
}

std::string field(const std::string& text) {
    return std::string(8 - std::min<std::size_t>(8, text.size()), ' ') + text;
}

}  // namespace

int IgesBuilder::add(int type, const std::string& parameters, const IgesFields& fields) {
    entries_.push_back({type, fields, parameters});
    return static_cast<int>(2 * entries_.size() - 1);
}

std::string IgesBuilder::unit(int flag, const std::string& name) {
    return "1H,,1H;,4HTest,8Htest.igs,4HMade,3H1.0,32,38,6,308,15,4HTest,1.," +
           std::to_string(flag) + "," + std::to_string(name.size()) + "H" + name +
           ",1,0.01,15H20260101.000000,1E-6,1000.,5HAda L,7HMachine,11,0,15H20260102.000000;";
}

std::string IgesBuilder::onlyGlobal(const std::string& global) {
    int count = 0;
    return line("A test", 'S', 1) + cut(global, 'G', count);
}

std::string IgesBuilder::write(const std::string& global) const {
    int globals = 0;
    std::string out = line("A test", 'S', 1) + cut(global.empty() ? unit(2) : global, 'G', globals);
    std::string parameters;
    int lines = 0;
    int directory = 0;
    for (const Entry& entry : entries_) {
        const std::string text = std::to_string(entry.type) + "," + entry.parameters + ";";
        const int first = lines + 1;
        for (std::size_t at = 0; at < text.size(); at += kParameterColumns) {
            std::string data = text.substr(at, kParameterColumns);
            data.resize(kParameterColumns, ' ');
            parameters += line(data + field(directory + 1), 'P', ++lines);
        }
        out += line(field(entry.type) + field(first) + field(0) + field(0) + field(0) + field(0) +
                        field(entry.fields.transform) + field(0) + "00000000",
                    'D', ++directory);
        out += line(field(entry.type) + field(0) + field(0) + field(lines - first + 1) +
                        field(entry.fields.form) + field(0) + field(0) + field(entry.fields.label) +
                        field(entry.fields.subscript),
                    'D', ++directory);
    }
    out += parameters;
    return out + line("S      1G" + number(globals, "%7d") + "D" + number(directory, "%7d") + "P" +
                          number(lines, "%7d"),
                      'T', 1);
}

}  // namespace support
