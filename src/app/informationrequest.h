#pragma once

#include <optional>

namespace quorvale {

// Answers "--help" and "--version" on stdout before any window or display is
// needed. Returns the exit status when the command line asked for one of them.
std::optional<int> answerInformationRequest(int argc, char **argv);

} // namespace quorvale
