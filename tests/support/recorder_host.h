#pragma once
// A host that records what the logic asks of windows and answers from a script.
#include "core/host.h"

#include <QCoreApplication>
#include <QString>
#include <QStringList>
#include <deque>
#include <map>
#include <vector>

namespace fm::test {

struct Box {
    QString text, title;
    int icon = 0, mode = 0;
    bool system = false;
};

class RecorderHost : public UiHost {
public:
    RecorderHost();
    ~RecorderHost() override;

    // Answers for the next boxes, in order; once used up, boxes answer `defaultAnswer`.
    std::deque<bool> answers;
    bool defaultAnswer = false;
    std::vector<Box> boxes;
    QStringList waitTexts;
    std::map<int, bool> enabled;
    int waitShown = 0, waitHidden = 0, recentChanged = 0, infoUpdates = 0, warningsChanged = 0,
        warningsShown = 0;
    double dateAnswer = 0;
    int dateAsked = 0;
    int battImage = 0;
    QString commText;                         // the link's status text, as last set
    std::vector<std::pair<int, int>> shares;  // received, total

    bool MessBox(const QString &text, const QString &title, int icon, int mode) override;
    bool SystemBox(const QString &text, const QString &title, SystemBoxKind kind) override;
    void SetPanelText(const QString &) override {}
    void SetButtonEnabled(int button, bool on) override { enabled[button] = on; }
    bool ButtonEnabled(int button) const override;
    void SetButtonValue(int, int) override {}
    void UpdateInfo() override { ++infoUpdates; }
    void WarningsChanged() override { ++warningsChanged; }
    void ShowWarnings() override { ++warningsShown; }
    void SetBusy(bool) override {}
    void RecentFilesChanged() override { ++recentChanged; }
    void WaitShow() override { ++waitShown; }
    void WaitText(const QString &text) override { waitTexts << text; }
    void WaitAnimate(int) override {}
    void WaitHide() override { ++waitHidden; }
    void WaitShare(int received, int total) override { shares.push_back({received, total}); }
    double AskDate() override {
        ++dateAsked;
        return dateAnswer;
    }
    void SetCommStatus(int, const QString &text) override { commText = text; }
    void SetBattImage(int image) override { battImage = image; }
    // Events run, as the application's would, so that waits for the link end.
    void DoEvents() override { QCoreApplication::processEvents(QEventLoop::AllEvents, 20); }

    // The text of the last box, or empty.
    QString LastBox() const { return boxes.empty() ? QString() : boxes.back().text; }

private:
    bool Answer();
};

}  // namespace fm::test
