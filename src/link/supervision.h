#pragma once
// The port the user chose and the supervised link on top of it.
namespace fm {
// Opens port index + 1 ("Com 1" is index 0); false when it could not be opened.
bool SelectPort(int index);
bool InitCommunication();
void DropCommunication();
void KeepAlive();
// A command got no reply; `why` is the text the lamp shows (no reply, or the link lost).
void TimeoutFunction(int why = 3029);
// Sets MonitorState from the status bits of the settings block.
void MonitorStateFromSettings();
} // namespace fm
