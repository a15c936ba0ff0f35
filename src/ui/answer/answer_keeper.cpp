#include "ui/answer/answer_keeper.h"

#include <new>
#include <utility>

namespace velkor::ui {

namespace {

// Functions of an answer that is gone before a user notices.
constexpr size_t kDestroyedAtOnce = 20000;

// None where there is no memory for it.
AnswerKeeper::Answer MadeBy(const AnswerMaking& making,
                            const StkTableReading::Checkpoint& checkpoint) {
  try {
    return making(checkpoint);
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}

}  // namespace

AnswerKeeper::AnswerKeeper(UiContext& context) : context_(context), reading_(context.document) {
  context_.document.AddView(*this);
}

AnswerKeeper::~AnswerKeeper() {
  reading_.Stop();
  context_.document.RemoveView(*this);
}

void AnswerKeeper::OnUpdate(ViewHint hint) {
  switch (hint) {
    case HINT_CLEAR:
      reading_.Stop();
      ++number_;
      working_ = false;
      return Replace(nullptr);
    case HINT_RESULTS:
    case HINT_STRUCTURE:
    case HINT_SIZES:
      return Make();
    case HINT_SELECTION:
    case HINT_SAVED:
      return;
  }
}

void AnswerKeeper::Make() {
  const uint64_t number = ++number_;
  reading_.Stop();
  AnswerMaking making = AnswerOf(context_);
  working_ = making != nullptr &&
             reading_.Start([this, number, making](const StkTableReading::Checkpoint& checkpoint) {
               Answer answer = MadeBy(making, checkpoint);
               QMetaObject::invokeMethod(
                   &receiver_,
                   [this, number, answer = std::move(answer)] { Take(number, answer); },
                   Qt::QueuedConnection);
             });
  if (!working_) {
    Replace(nullptr);
  }
}

void AnswerKeeper::Take(uint64_t number, Answer answer) {
  if (number == number_) {
    working_ = false;
    Replace(std::move(answer));
  }
}

void AnswerKeeper::Replace(Answer answer) {
  std::shared_ptr<const AnalysisAnswer> before = std::exchange(answer_, std::move(answer));
  for (const Listener& listener : listeners_) {
    listener(answer_);
  }
  if (before && before->result.functions.size() > kDestroyedAtOnce) {
    disposal_.Dispose({std::const_pointer_cast<AnalysisAnswer>(std::move(before))});
  }
}

}  // namespace velkor::ui
