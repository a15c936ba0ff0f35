#pragma once

#include <QObject>
#include <functional>
#include <memory>
#include <vector>

#include "document/background_disposal.h"
#include "document/document.h"
#include "document/table_reading.h"
#include "ui/answer/analysis_answer.h"
#include "ui/ui_context.h"

namespace velkor::ui {

// Keeps the answer of the document's analysis: made anew in the background after each change, and
// told to whoever asked for it when it is there. While a newer one is made the last one stays; on
// HINT_CLEAR it goes. User-interface thread.
class AnswerKeeper : public View {
 public:
  // null: there is none.
  using Answer = std::shared_ptr<const AnalysisAnswer>;
  using Listener = std::function<void(const Answer&)>;

  explicit AnswerKeeper(UiContext& context);
  ~AnswerKeeper() override;
  AnswerKeeper(const AnswerKeeper&) = delete;
  AnswerKeeper& operator=(const AnswerKeeper&) = delete;

  // Told of each answer from now on, and of none; as long as the keeper lives.
  void AddListener(Listener listener) { listeners_.push_back(std::move(listener)); }
  const Answer& Last() const { return answer_; }
  // A newer one is being made.
  bool IsWorking() const { return working_; }

  void OnUpdate(ViewHint hint) override;

 private:
  void Make();
  void Take(uint64_t number, Answer answer);
  void Replace(Answer answer);

  UiContext& context_;
  QObject receiver_;  // of what the background posts
  StkTableReading reading_;
  std::vector<Listener> listeners_;
  Answer answer_;
  uint64_t number_ = 0;  // of the one that is made last; what an earlier one posts is late
  bool working_ = false;
  BackgroundDisposal disposal_;
};

}  // namespace velkor::ui
