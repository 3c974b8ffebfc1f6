#pragma once
// Wires the link to the subsystems above it: the port event, and the replies whose data
// belongs to the upload and to live mode.
namespace fm {
// Done once where the application, the command-line companion or a test starts.
void InstallLinkHandlers();
}  // namespace fm
