#pragma once

#include <memory>
#include <string>

#include "diff/assembly_diff_engine.h"
#include "platform/bxt/application.h"
#include "platform/hps/component.h"
#include "platform/ui/dialog.h"
#include "results/compare_outcome.h"
#include "results/result_section.h"

namespace results {

/// The one window in which a user reads the outcome of a run. Modeless; closing only hides it.
/// It owns the product-structure trees and keeps the models that they are built from, so that
/// they can be built when somebody first wants to see them. User-interface thread.
///
/// It holds the product-structure section so far; the sections of lists have no controls yet.
class UnifiedCompareDialog : private ui::DialogEvents {
public:
    UnifiedCompareDialog();
    /// Destroys the window if there is one; published outcomes keep what they have.
    ~UnifiedCompareDialog() override;
    UnifiedCompareDialog(const UnifiedCompareDialog&) = delete;
    UnifiedCompareDialog& operator=(const UnifiedCompareDialog&) = delete;

    /// Template of the user's language.
    static int SelectTemplateId();

    /// Creates the window from that template, hidden. False without a toolkit.
    bool Create();
    bool HasWindow() const;
    void DestroyWindow();
    void Show();
    void Hide();
    void BringToForeground();

    /// The two files as the workflow gives them.
    std::wstring referencePath;
    std::wstring comparePath;

    /// Forgets the last run: trees, their items, the section. Nothing happens without a window.
    void RefreshResults();

    /// What sections and reports are made from. The dialog shares all four until the next call.
    void SetReportContext(std::shared_ptr<bxt::IDocument> document,
                          std::shared_ptr<bxt::IApplication> application,
                          const HPS::CADModel& referenceModel, const HPS::CADModel& compareModel);

    /// Goes to a section. The first visit of the product structure builds the trees, which walks
    /// both models; exceptions of their providers pass through.
    void ShowSection(ResultSection section);
    ResultSection currentSection() const { return currentSection_; }

    /// Builds both trees unless they are built or both models are empty.
    void EnsureTrees();
    const diff::AssemblyDiffEngine& engine() const { return engine_; }

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
    void onCancel() override;
    void PopulateTreePair();
    void ReleaseOutcome();

    std::unique_ptr<ui::Dialog> window_;
    ResultSection currentSection_ = ResultSection::FileInformation;
    diff::AssemblyDiffEngine engine_;
    std::shared_ptr<bxt::IDocument> document_;
    std::shared_ptr<bxt::IApplication> application_;
    HPS::CADModel referenceModel_;
    HPS::CADModel compareModel_;
    std::weak_ptr<CompareOutcome> outcome_;
};

}  // namespace results
