#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "resources/string_table.h"
#include "tests/support/scripted_host.h"
#include "tests/support/scripted_host_services.h"
#include "workflow/compare_workflow.h"
#include "workflow/shared_state.h"

/// A workflow in a scripted host, with one ordinary document open and two files on disk.
class WorkflowTest : public testing::Test, protected bxt::IView {
protected:
    using Status = bxtimp::IDocComparer::Status;
    using Entries = std::vector<std::string>;

    WorkflowTest() {
        resources::install();
        workflow::shared() = {};
        services.files->existing = {kReference, kCompare, L"/data/ref2.stp", L"/data/cmp2.stp"};
        host->hints->views = {this};
        host->activate(host->addDocument("source", L"/data/open.stp"));
    }
    ~WorkflowTest() override {
        host->hints->views.clear();
        compare.reset();
        workflow::shared() = {};
        resources::uninstall();
    }

    void update(const bxtui::Hint* hint) override {
        if (onHint && hint) onHint(*hint);
        if (compare) compare->update(hint);
    }

    /// The user will choose this pair in the next prompt.
    void choose(const std::wstring& reference, const std::wstring& compareFile) {
        services.toolkit->scripts.emplace_back([=](support::FakeDialog::State& prompt) {
            prompt.type(1001, reference);
            prompt.type(1002, compareFile);
            prompt.click(1);
        });
    }
    void choosePair() { choose(kReference, kCompare); }
    void run() { compare->RunCompare(host); }
    void runPair() {
        choosePair();
        run();
    }
    void comparerAnswers(Status status, const std::wstring& path = L"/results/1.xbf") {
        services.comparer->body = [=](Status& out) {
            out = status;
            return path;
        };
    }
    const workflow::WorkflowState& state() const { return compare->state(); }
    support::CallLog& log() { return *services.log; }
    support::FakeDocument& activeDocument() { return *host->active->document(); }
    std::shared_ptr<support::FakeDialog::State> results() { return services.toolkit->last(1300); }
    static bool frameEnabled(support::FakeDocument& document) {
        return document.getAs<bxt::SCDocFrame>(bxtsg::code::DocFrame)->frameEnabled;
    }

    const std::wstring kReference = L"/data/ref.stp";
    const std::wstring kCompare = L"/data/cmp.stp";
    support::TestServices services;
    std::shared_ptr<support::ScriptedHost> host =
        std::make_shared<support::ScriptedHost>(services.log);
    std::unique_ptr<workflow::CompareWorkflow> compare =
        std::make_unique<workflow::CompareWorkflow>(L"Compare Plugin");
    /// Called before the workflow gets a hint.
    std::function<void(const bxtui::Hint&)> onHint;
};
