#pragma once
// What live mode asks of the viewer that shows it: the real-time window implements
// it, fluxmere-cli prints, tests record.
#include "shell/info_model.h"

namespace fm {
class LiveDisplay {
public:
    virtual ~LiveDisplay() = default;
    // The viewer is the active child window: the panel follows the live samples.
    virtual bool Active() const = 0;
    virtual void ShowInfo(const InfoTexts &texts) = 0;
    virtual void ClearChart() = 0;
    // The start and stop buttons: live true enables stop and disables start.
    virtual void SetButtons(bool live) = 0;
    virtual void SetStatePicture(bool running) = 0;
    // The sample's axes as they are stored, so that its figures read as its own digits.
    virtual void AggiornaDisegno(float x, float y, float z, bool addToChart) = 0;
};

// The viewer in place, or none (samples are then only counted and logged).
void SetLiveDisplay(LiveDisplay *display);
LiveDisplay *TheLiveDisplay();
}  // namespace fm
