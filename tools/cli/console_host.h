#pragma once
// The host of the command-line companion: boxes go to standard error, questions are
// answered by the --yes option, windows do not exist.
#include "core/host.h"

namespace fm::cli {
class ConsoleHost : public UiHost {
public:
    explicit ConsoleHost(bool yes) : yes_(yes) {}
    bool MessBox(const QString &text, const QString &title, int icon, int mode) override;
    bool SystemBox(const QString &text, const QString &title, SystemBoxKind kind) override;
    void SetPanelText(const QString &) override {}
    void SetButtonEnabled(int, bool) override {}
    bool ButtonEnabled(int) const override { return true; }
    void SetButtonValue(int, int) override {}
    void UpdateInfo() override {}
    void WarningsChanged() override {}
    void ShowWarnings() override {}
    void SetBusy(bool) override {}
    void RecentFilesChanged() override {}
    void WaitShow() override {}
    void WaitText(const QString &) override {}
    void WaitAnimate(int) override {}
    void WaitHide() override {}
    double AskDate() override;
    void SetCommStatus(int, const QString &) override {}
    void SetBattImage(int) override {}
    void DoEvents() override;

private:
    bool yes_;
};
} // namespace fm::cli
