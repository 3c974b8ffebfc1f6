#pragma once
namespace fm {
// Turns the reply to command 2 in RxBuffer into the next live sample.
void SplitDataReadData();
} // namespace fm
