#include "extract/file_information.h"

namespace extract {

void AddFileInformation(const std::wstring& path, std::vector<std::wstring>& names,
                        std::vector<std::wstring>& values, wchar_t separator) {
    const std::size_t last = path.rfind(separator);
    const bool split = last != std::wstring::npos;
    for (const wchar_t* name : {L"File Path", L"File Name", L"Volume", L"Difference"}) {
        names.emplace_back(name);
    }
    values.push_back(split ? path.substr(0, last) : path);
    values.push_back(split ? path.substr(last + 1) : path);
    values.emplace_back();
    values.emplace_back(L"-");
}

}  // namespace extract
