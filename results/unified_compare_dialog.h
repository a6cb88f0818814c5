#pragma once

#include <array>
#include <memory>
#include <string>
#include <vector>

#include "diff/assembly_diff_engine.h"
#include "platform/bxt/application.h"
#include "platform/ui/dialog.h"
#include "reports/report_content.h"
#include "results/compare_outcome.h"
#include "results/page_painter.h"
#include "results/part_rows.h"
#include "results/section_info.h"

namespace results {

/// The one window in which a user reads the outcome of a run. Modeless; closing only hides it.
/// It owns the rows of all sections and the product-structure trees, and keeps the models that
/// the trees are built from, so that they can be built when somebody first wants to see them.
/// User-interface thread.
class UnifiedCompareDialog : private ui::DialogEvents {
public:
    UnifiedCompareDialog();
    /// Destroys the window if there is one; published outcomes keep what they have.
    ~UnifiedCompareDialog() override;
    UnifiedCompareDialog(const UnifiedCompareDialog&) = delete;
    UnifiedCompareDialog& operator=(const UnifiedCompareDialog&) = delete;

    /// Template of the user's language.
    static int SelectTemplateId();

    /// Creates the window from that template, hidden. False without a toolkit. The labels over
    /// the panels name the files that are set by then, and never change again.
    bool Create();
    bool HasWindow() const;
    void DestroyWindow();
    void Show();
    void Hide();
    void BringToForeground();
    /// Moves the window without a change of stacking order; nothing without a window.
    void Place(const ui::PixelRect& place);

    /// The two files as the workflow gives them.
    std::wstring referencePath;
    std::wstring comparePath;

    /// Each copies its rows; with a window it also shows them.
    void SetBomData(const SectionRows& rows);
    void SetAttributeData(const SectionRows& rows);
    void SetPartAttributeData(const std::vector<extract::PartAttributes>& referenceParts,
                              const std::vector<extract::PartAttributes>& compareParts);
    void SetPmiData(const SectionRows& rows);
    void SetFileInfoData(const SectionRows& rows);
    /// Volumes with the units whose cubes they are in; 0 means unknown.
    void SetVolumeData(double referenceVolume, const std::wstring& referenceUnit,
                       double compareVolume, const std::wstring& compareUnit);

    /// Begins a new run: sections by the switches as they are now, Assembly mode, no trees, all
    /// lists filled anew, the first section. Nothing happens without a window.
    void RefreshResults();

    /// What sections and reports are made from. The dialog shares all four until the next call.
    void SetReportContext(std::shared_ptr<bxt::IDocument> document,
                          std::shared_ptr<bxt::IApplication> application,
                          const HPS::CADModel& referenceModel, const HPS::CADModel& compareModel);

    /// Goes to a section, to Attributes in Assembly mode. The first visit of the product
    /// structure builds the trees, which walks both models; exceptions of their providers pass
    /// through.
    void ShowSection(ResultSection section);
    ResultSection currentSection() const { return page_.current; }
    /// The tabs from left to right.
    const std::vector<ResultSection>& SectionOrder() const { return page_.sectionOrder; }
    /// Differences per section, by its number, as of the last RefreshResults().
    const std::array<int, kSectionCount>& sectionCounts() const { return counts_; }
    bool partLevel() const { return partLevel_; }
    const PartFolding& folding() const { return folding_; }
    const ResultData& data() const { return data_; }
    int numberPrecision() const { return precision_; }

    /// Builds both trees unless they are built or both models are empty.
    void EnsureTrees();
    const diff::AssemblyDiffEngine& engine() const { return engine_; }
    /// Nodes of both trees, roots aside, that are not the same.
    int CountPSTreeDiffs() const;
    /// Fills both trees anew; top-level items that the user closed are closed again.
    void PopulateTreePair();

    /// Puts all results on the clipboard as text and says so in the status bar.
    void OnCopyResults();
    /// The text that Copy puts on the clipboard now.
    std::wstring CopyText() const;
    /// Asks for a file, writes the report that its extension names, and says in the status bar
    /// how that went. Nothing happens without a result document.
    void OnSaveResults();
    /// What a report would be made from now. Builds the trees if the report shows them.
    reports::ReportContent BuildReportContent();
    /// The states of those rows; none for a section that is switched off.
    reports::RowStates BuildRowStates() const;

    /// A record of this run's outcome. It is cut off from this dialog by RefreshResults(), by
    /// the next call, and by destruction.
    std::shared_ptr<CompareOutcome> MakeOutcome();

    const std::shared_ptr<bxt::IDocument>& document() const { return document_; }
    const std::shared_ptr<bxt::IApplication>& application() const { return application_; }
    const HPS::CADModel& referenceModel() const { return referenceModel_; }
    const HPS::CADModel& compareModel() const { return compareModel_; }

private:
    void onInitDialog() override;
    ui::ItemColours onPaintItem(int treeId, const ui::TreeItemData& item) override;
    ui::ItemColours onPaintRow(int listId, std::int32_t rowData) override;
    void onCancel() override;
    void onClicked(int controlId) override;
    bool onKeyDown(ui::Key key) override;
    void onResized(ui::PixelSize client) override;
    void onPaint(ui::Painter& painter, ui::PixelSize client) override;
    void onMouseDown(ui::PixelPoint point) override;
    ui::ControlColours onColours(int controlId, ui::ControlKind kind,
                                 const ui::ControlColours& own) override;
    void onSelectionChanged(int listBoxId) override;
    void onPaintListBoxItem(int listBoxId, std::size_t position, const ui::PixelRect& area,
                            bool selected, ui::Painter& painter) override;
    void onRowClicked(int listId, int row) override;

    void SetUpWindow();
    void SetUpLists();
    void SetUpTrees();
    void WriteLabels();
    void LoadSectionList();
    bool HasSection(ResultSection section) const;
    void SelectPartLevel(bool partLevel);
    void CheckRadios();
    void HideSections();
    void LayoutPage(ui::PixelSize client);
    void LayoutRadioButtons();

    void SetupListColumns(const SectionInfo& section, std::uint32_t firstCaptionId,
                          std::uint32_t secondCaptionId, bool indexed);
    void PopulateListPair(ResultSection section, const SectionRows& rows, bool indexed);
    void PopulateBomList();
    void PopulatePmiList();
    void PopulateFileInfoList();
    void PopulateAttributeList();
    void PopulatePartList();
    void TogglePartRow(int row);
    void UpdateSectionCounts();
    void SetSectionCaption(std::size_t position, const std::wstring& caption, int count);

    int WriteReport(const std::wstring& path, std::wstring& event);
    void ReleaseOutcome();

    std::unique_ptr<ui::Dialog> window_;
    PageState page_;
    bool partLevel_ = false;
    int precision_ = 3;
    PartFolding folding_;
    std::vector<std::wstring> rowKeys_;
    ResultData data_;
    std::array<int, kSectionCount> counts_{};
    diff::AssemblyDiffEngine engine_;
    std::shared_ptr<bxt::IDocument> document_;
    std::shared_ptr<bxt::IApplication> application_;
    HPS::CADModel referenceModel_;
    HPS::CADModel compareModel_;
    std::weak_ptr<CompareOutcome> outcome_;
};

}  // namespace results
