#include "reports/gate/stack_figures.h"

#include <algorithm>
#include <fmt/format.h>

#include "files/near_words.h"

namespace velkor::reports {
namespace {

std::string RtosOf(const GateInput& input, const TargetTable& table) {
  if (!input.configuration.rtos.empty()) {
    return input.configuration.rtos;
  }
  const auto known = std::ranges::find_if(table.KnownRtos(), [&](const TargetTable::Rtos& rtos) {
    return std::ranges::any_of(rtos.objects, [&](const std::string& object) {
      return input.facts.Find(object) != nullptr;
    });
  });
  return known == table.KnownRtos().end() ? "none" : known->name;
}

// What is stated wins over what the table says.
std::optional<uint64_t> Chosen(std::optional<uint32_t> ofStack, std::optional<uint32_t> ofAll,
                               const StackFigure* figure, bool usesFloatingPoint) {
  if (ofStack || ofAll) {
    return ofStack ? *ofStack : *ofAll;
  }
  if (figure == nullptr) {
    return std::nullopt;
  }
  return usesFloatingPoint ? figure->bytes : figure->withoutFloatingPoint.value_or(figure->bytes);
}

}  // namespace

StackFigures::StackFigures(const GateInput& input, const TargetTable& table)
    : input_(input),
      target_(!input.configuration.target.empty() ? input.configuration.target
                                                  : input.facts.target),
      rtos_(RtosOf(input, table)),
      frame_(table.Frame(target_)),
      switch_(table.Switch(target_, rtos_)) {}

std::optional<uint64_t> StackFigures::Frame(const Configuration::Stack* stack,
                                            bool usesFloatingPoint) const {
  return Chosen(stack != nullptr ? stack->frame : std::nullopt, input_.configuration.frame, frame_,
                usesFloatingPoint);
}

std::optional<uint64_t> StackFigures::Switch(const Configuration::Stack* stack,
                                             bool usesFloatingPoint) const {
  return Chosen(stack != nullptr ? stack->contextSwitch : std::nullopt,
                input_.configuration.contextSwitch, switch_, usesFloatingPoint);
}

bool StackFigures::AskForFloatingPoint() const {
  const auto depends = [](const StackFigure* figure) {
    return figure != nullptr && figure->withoutFloatingPoint.has_value();
  };
  return depends(frame_) || depends(switch_);
}

GateFault StackFigures::NoFrame(const Configuration::Stack* stack) const {
  return Lacking("frame", "the hardware pushes when an interrupt begins", stack);
}

GateFault StackFigures::NoSwitch(const Configuration::Stack* stack) const {
  return Lacking("switch", "a change of the task pushes", stack);
}

GateFault StackFigures::Lacking(std::string_view key, std::string_view of,
                                const Configuration::Stack* stack) const {
  const Configuration& configuration = input_.configuration;
  TextPlace place = configuration.PlaceOf("target");
  if (place == TextPlace() && stack != nullptr) {
    place = stack->place;
  }
  std::string where = target_.empty() ? "the target is not known"
                                      : fmt::format(R"(target "{}", rtos "{}")", target_, rtos_);
  if (const std::string near = NearestWord(target_, TargetTable::BuiltIn().KnownTargets());
      frame_ == nullptr && !near.empty()) {
    where += "; near it: \"" + near + "\"";
  }
  return {place, fmt::format("the bytes that {} are not known ({}): state \"{}\"", of, where, key)};
}

}  // namespace velkor::reports
