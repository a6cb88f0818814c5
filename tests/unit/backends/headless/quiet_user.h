#pragma once

#include <functional>
#include <string>
#include <vector>

#include "backends/headless/user.h"

/// A user that does what a test says and writes down what it sees.
class QuietUser : public headless::User {
public:
    void answerDialog(headless::Dialog& dialog) override {
        ++dialogs;
        if (onDialog) onDialog(dialog);
    }
    int answerMessageBox(const headless::MessageBox& box) override {
        boxes.push_back(box);
        return 1;
    }
    bool cancelsProgress() override { return cancels && cancels(); }
    void seeProgress(const std::wstring& title, int percent) override {
        titles.push_back(title);
        percents.push_back(percent);
    }
    void seeStatusText(const std::wstring& text) override { statusTexts.push_back(text); }

    std::function<void(headless::Dialog&)> onDialog;
    std::function<bool()> cancels;
    int dialogs = 0;
    std::vector<headless::MessageBox> boxes;
    std::vector<std::wstring> titles;
    std::vector<int> percents;
    std::vector<std::wstring> statusTexts;
};
