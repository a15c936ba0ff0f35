#include "readers/gcc/loose_object.h"

#include <algorithm>

#include "readers/gcc/object_recorder.h"

namespace velkor {
namespace {

void RecordCalls(ObjectRecorder& object, UnitRecording& recording) {
  for (const ObjectCall& call : object.Facts().Calls()) {
    if (call.caller != ObjectCall::kNoFunction) {
      object.RecordCall(object.FunctionOf(call.caller), call);
    }
  }
  std::ranges::stable_sort(recording.calls, {}, &UnitRecording::Call::caller);
}

StkNote NoteOf(const ObjectRecorder& object, std::string_view path, bool compiled,
               const StkMessages& messages) {
  std::vector<std::string_view> names;
  for (const ObjectFunction& function : object.Facts().Functions()) {
    names.push_back(function.name);
  }
  const auto count = static_cast<uint32_t>(names.size());
  return {.rule = compiled ? "module-not-whole" : "assembler",
          .text = messages.FormatMessageText(
              compiled ? MessageKey::kNoteNoCallGraph : MessageKey::kNoteAssembler,
              {count, NamesOf(names)}),
          .file = std::string(path),
          .function = {},
          .incomplete = compiled};
}

}  // namespace

LooseObject RecordLooseObject(std::string_view path, std::string_view bytes,
                              const StkMessages& messages, UnitRecording& recording) {
  ObjectRecorder object(bytes, recording);
  if (!object.Elf().IsElf()) {
    return LooseObject::kUnreadable;
  }
  recording.machine = object.Elf().Machine();
  const ObjectFacts& facts = object.Facts();
  if (facts.HasLinkTimeCode()) {
    return LooseObject::kForLinking;
  }
  recording.title = path;
  recording.isObject = true;
  const BinaryFaults faults = object.Faults();
  for (const BinaryFaults::Entry& entry : faults.Entries()) {
    recording.notes.push_back(
        {.rule = "object-not-whole",
         .text = messages.FormatMessageText(MessageKey::kNoteObjectFault, {TextOf(entry)}),
         .file = std::string(path),
         .function = {}});
  }
  if (facts.Functions().empty()) {
    return LooseObject::kNoCode;
  }
  recording.hasMachine = true;
  object.RecordOthers();
  RecordCalls(object, recording);
  object.RecordTakenAddresses();
  const bool compiled = !facts.Compiler().empty();
  recording.notes.push_back(NoteOf(object, path, compiled, messages));
  return compiled ? LooseObject::kCompiled : LooseObject::kAssembler;
}

}  // namespace velkor
