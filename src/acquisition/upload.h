#pragma once
// The logger's memory into the data set, in one bulk reply.
namespace fm {
// True when the upload was accepted and the data set holds the new data.
bool UploadData();
// Unpacks the upload reply in RxBuffer; false when it refused the data.
bool SplitUploadData();
} // namespace fm
