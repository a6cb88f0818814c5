#include "backends/occt/read/step_model.h"

#include <algorithm>
#include <charconv>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>

#include <StepData_StepReaderData.hxx>
#include <StepData_StepReaderTool.hxx>

#include "backends/occt/step/tokens.h"

namespace occt {
namespace {

using step::Part21;

/// Texts with a zero at their ends that stay where they are.
class Texts {
public:
    const char* keep(std::string_view text) {
        if (text.size() + 1 > left_) grow(text.size() + 1);
        char* const begin = next_;
        std::memcpy(begin, text.data(), text.size());
        begin[text.size()] = '\0';
        next_ += text.size() + 1;
        left_ -= text.size() + 1;
        return begin;
    }

private:
    void grow(std::size_t least) {
        constexpr std::size_t usual = std::size_t{1} << 18;
        left_ = std::max(least, usual);
        blocks_.push_back(std::make_unique_for_overwrite<char[]>(left_));
        next_ = blocks_.back().get();
    }

    std::vector<std::unique_ptr<char[]>> blocks_;
    char* next_ = nullptr;
    std::size_t left_ = 0;
};

struct Parameter {
    Interface_ParamType type;
    const char* text;
};

struct RecordText {
    const char* name;  ///< "#12" for an instance, "#0" for its further keywords, "$1" for a list
    const char* type;
    std::uint32_t first;
    std::uint32_t count;
};

constexpr const char* kListType = "/* (SUB) */";
constexpr const char* kFurther = "#0";

Interface_ParamType typeOf(step::TokenSink::Token token) {
    using Token = step::TokenSink::Token;
    switch (token) {
        case Token::Integer: return Interface_ParamInteger;
        case Token::Real: return Interface_ParamReal;
        case Token::Text: return Interface_ParamText;
        case Token::Word: return Interface_ParamEnum;
        case Token::Binary: return Interface_ParamHexa;
        case Token::Missing: return Interface_ParamVoid;
        case Token::Derived: break;
    }
    return Interface_ParamMisc;
}

/// Puts statements into the order that the library's reader wants: a list stands as a record of
/// its own before the one that holds it.
class Records : public step::TokenSink {
public:
    Records(const Part21& file, const std::vector<std::uint32_t>& piece, const StepPieces& pieces)
        : file_(file), piece_(piece), pieces_(pieces), edge_(file.typeOf("EDGE_CURVE")) {}

    void add(std::uint32_t position) {
        const step::Instance& instance = file_.instances()[position];
        isEdge_ = edge_ != Part21::kComplex && instance.type == edge_;
        name_ = reference("#", instance.id);
        readTokens(file_, instance, *this);
        open_.clear();
        held_.clear();
    }

    void beginRecord(std::string_view keyword) override {
        lists_ = 0;
        open_.push_back({name_, typeText(keyword), 0});
        name_ = kFurther;
    }

    void endRecord() override { close(); }

    void beginList(std::string_view keyword) override {
        const char* const type = keyword.empty() ? kListType : typeText(keyword);
        open_.push_back({listName(++lists_), type, static_cast<std::uint32_t>(held_.size())});
    }

    void endList() override {
        const char* const name = open_.back().name;
        close();
        held_.push_back({Interface_ParamSub, name});
    }

    void reference(std::uint64_t id) override {
        std::uint32_t position = file_.position(id);
        if (isEdge_) position = instead(position);
        // What was left out of the piece is left out of lists.
        if (!std::binary_search(piece_.begin(), piece_.end(), position)) return;
        held_.push_back({Interface_ParamIdent, reference("#", file_.instances()[position].id)});
    }

    void value(Token token, std::string_view text) override {
        held_.push_back({typeOf(token), texts_.keep(text)});
    }

    std::vector<RecordText> records;
    std::vector<Parameter> parameters;

private:
    struct Open {
        const char* name;
        const char* type;
        std::uint32_t first;
    };

    void close() {
        const Open& last = open_.back();
        const auto first = static_cast<std::uint32_t>(parameters.size());
        parameters.insert(parameters.end(), held_.begin() + last.first, held_.end());
        held_.resize(last.first);
        records.push_back(
            {last.name, last.type, first, static_cast<std::uint32_t>(parameters.size()) - first});
        open_.pop_back();
    }

    const char* reference(const char* mark, std::uint64_t number) {
        char buffer[24];
        buffer[0] = mark[0];
        const auto end = std::to_chars(buffer + 1, buffer + sizeof buffer, number);
        return texts_.keep({buffer, static_cast<std::size_t>(end.ptr - buffer)});
    }

    const char* listName(std::size_t number) {
        while (listNames_.size() < number) {
            listNames_.push_back(reference("$", listNames_.size() + 1));
        }
        return listNames_[number - 1];
    }

    /// Few keywords, many uses.
    const char* typeText(std::string_view keyword) {
        const std::uint32_t type = file_.typeOf(keyword);
        if (type == Part21::kComplex) return texts_.keep(keyword);
        if (typeTexts_.size() <= type) typeTexts_.resize(type + 1, nullptr);
        if (typeTexts_[type] == nullptr) typeTexts_[type] = texts_.keep(keyword);
        return typeTexts_[type];
    }

    std::uint32_t instead(std::uint32_t position) const {
        const auto& all = pieces_.instead;
        const auto found = std::lower_bound(all.begin(), all.end(), std::pair(position, 0U));
        return found != all.end() && found->first == position ? found->second : position;
    }

    const Part21& file_;
    const std::vector<std::uint32_t>& piece_;
    const StepPieces& pieces_;
    std::uint32_t edge_;
    Texts texts_;
    const char* name_ = kFurther;
    bool isEdge_ = false;
    std::size_t lists_ = 0;
    std::vector<Open> open_;
    std::vector<Parameter> held_;
    std::vector<const char*> listNames_;
    std::vector<const char*> typeTexts_;
};

Handle(StepData_StepReaderData) readerData(const Records& records) {
    const Handle(StepData_StepReaderData) data = new StepData_StepReaderData(
        0, static_cast<int>(records.records.size()), static_cast<int>(records.parameters.size()));
    int number = 0;
    for (const RecordText& record : records.records) {
        ++number;
        data->SetRecord(number, record.name, record.type, static_cast<int>(record.count));
        for (std::uint32_t i = 0; i < record.count; ++i) {
            const Parameter& parameter = records.parameters[record.first + i];
            data->AddStepParam(number, parameter.text, parameter.type);
        }
        data->InitParams(number);
    }
    return data;
}

}  // namespace

StepModel readEntities(const step::Part21& file, const std::vector<std::uint32_t>& piece,
                       const StepPieces& pieces, const Handle(StepData_Protocol) & protocol) {
    Records records(file, piece, pieces);
    for (const std::uint32_t position : piece) records.add(position);
    const auto data = readerData(records);
    StepModel out;
    out.model = new StepData_StepModel;
    StepData_StepReaderTool tool(data, protocol);
    tool.SetErrorHandle(Standard_True);
    tool.Prepare();
    tool.LoadModel(out.model);
    if (out.model->Protocol().IsNull()) out.model->SetProtocol(protocol);
    out.entities.reserve(piece.size());
    int number = 0;
    for (const RecordText& record : records.records) {
        ++number;
        const bool isInstance = record.name[0] == '#' && record.name[1] != '0';
        if (isInstance) out.entities.push_back(data->BoundEntity(number));
    }
    tool.Clear();
    return out;
}

}  // namespace occt
