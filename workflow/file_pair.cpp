#include "workflow/file_pair.h"

#include <algorithm>
#include <set>

#include "platform/bxt/file_path.h"
#include "workflow/compare_files_dialog.h"

namespace workflow {
namespace {

struct ExcludedFormat {
    const wchar_t* name;
    const wchar_t* pattern;
};

constexpr ExcludedFormat kExcluded[] = {
    {L"Autodesk 3D Studio", L"*.3ds"},
    {L"3DXML Files", L"*.3dxml"},
    {L"CADDS Files", L"*._pd"},
    {L"CATIA V4 Files", L"*.model;*.dlv;*.exp;*.session"},
    {L"CGR Files", L"*.cgr"},
    {L"Collada Files", L"*.dae"},
    {L"Autocad Files", L"*.dwg;*.dxf"},
    {L"I-DEAS Files", L"*.arc;*.unv;*.mf1;*.prt;*.pkg"},
    {L"KMZ Files", L"*.kmz"},
    {L"Wavefront Obj", L"*.obj"},
    {L"OneSpace Designer Files", L"*.pkg;*.bdl"},
    {L"PLMXML File", L"*.plmxml"},
    {L"PRC 3D Reviewer Files", L"*.prc"},
    {L"PRW 3D Reviewer Files", L"*.prw"},
    {L"Rhino Files", L"*.3dm"},
    {L"Sketchup Files", L"*.skp"},
    {L"Solid Edge Files", L"*.par;*.asm;*.pwd;*.psm"},
    {L"STL Files", L"*.stl"},
    {L"Universal 3D Files", L"*.u3d"},
    {L"VDA Files", L"*.vda"},
    {L"VRML Files", L"*.wrl;*.vrml"},
};

constexpr const wchar_t* kAllSupported = L"All Supported Files";
constexpr std::size_t kShortestPattern = 2;

std::set<std::wstring> excludedTexts() {
    std::set<std::wstring> texts;
    for (const ExcludedFormat& row : kExcluded) texts.insert({row.name, row.pattern});
    return texts;
}

bool isPattern(const std::wstring& text) {
    return text.size() >= kShortestPattern && text.find(L"*.") != std::wstring::npos;
}

std::wstring withoutQuotes(std::wstring path) {
    path.erase(std::remove(path.begin(), path.end(), L'"'), path.end());
    return path;
}

bool canBeOffered(const std::wstring& documentFile) {
    const bxt::FilePath path(documentFile);
    const std::wstring extension = path.getExt();
    return !extension.empty() && !path.getDrive().empty() && IsComparableFormat(L"*" + extension);
}

}  // namespace

bool IsComparableFormat(const std::wstring& text) {
    static const std::set<std::wstring> excluded = excludedTexts();
    return excluded.count(text) == 0;
}

void BuildFileFilters(const FormatList& formats, FormatList& filters) {
    if (formats.empty()) return;
    std::wstring all;
    for (const std::wstring& text : formats) {
        if (text.empty() || text == kAllSupported || !IsComparableFormat(text)) continue;
        filters.push_back(text);
        if (isPattern(text)) all += text + L";";
    }
    filters.push_back(kAllSupported);
    filters.push_back(all);
}

int ChooseFiles(const FormatList& filters, const std::wstring& documentFile,
                std::wstring& referencePath, std::wstring& comparePath) {
    CompareFilesDialog dialog(filters);
    if (!documentFile.empty() && canBeOffered(documentFile)) dialog.referencePath = documentFile;
    const int result = dialog.DoModal();
    referencePath = withoutQuotes(dialog.referencePath);
    comparePath = withoutQuotes(dialog.comparePath);
    return result;
}

}  // namespace workflow
