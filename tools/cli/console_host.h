#pragma once
// The host of the command-line companion: boxes go to standard error, questions are
// answered by the --yes option, windows do not exist.
#include "core/host.h"

namespace fm::cli {
class ConsoleHost : public QuietHost {
public:
    explicit ConsoleHost(bool yes) : yes_(yes) {}
    bool MessBox(const QString &text, const QString &title, int icon, int mode) override;
    bool SystemBox(const QString &text, const QString &title, SystemBoxKind kind) override;
    bool ButtonEnabled(int) const override { return true; }
    double AskDate() override;
    void DoEvents() override;
    void WaitShare(int received, int total) override;
    void WaitHide() override;
    // The failure picture of the link's lamp: its text says what went wrong.
    void SetCommStatus(int image, const QString &text) override;

private:
    bool yes_;
    int shownShare_ = -1;
};
}  // namespace fm::cli
