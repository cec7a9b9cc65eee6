#pragma once

#include "base/SendrelError.h"
#include "base/UserQuestions.h"

#include <utility>

namespace sendrel {

// Runs a window's event handler at the top of the error trail: a failure is shown once and the
// window goes on. beforeShowing runs ahead of the message (a window puts its pointer back there).
template <typename F, typename G>
void RunHandler(UserQuestions &questions, F &&handler, G &&beforeShowing)
{
    try {
        std::forward<F>(handler)();
    } catch (const SendrelError &e) {
        std::forward<G>(beforeShowing)();
        questions.ShowErrorMessage(e.description());
    }
}

template <typename F>
void RunHandler(UserQuestions &questions, F &&handler)
{
    RunHandler(questions, std::forward<F>(handler), [] {});
}

}  // namespace sendrel
