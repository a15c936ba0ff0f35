#include "reports/analysis_result.h"

#include <array>

#include "reports/terminal_text.h"

namespace velkor::reports {
namespace {

constexpr std::array kTextsOfFew = {&AnalysedTexts::shownNames,      &AnalysedTexts::specNames,
                                    &AnalysedTexts::statements,      &AnalysedTexts::cutSpecNames,
                                    &AnalysedTexts::cutDisplayNames, &AnalysedTexts::symbolsToTell};

}  // namespace

void AnalysedTexts::Append(const AnalysedTexts& texts) {
  names.Append(texts.names);
  for (TextsOfFew AnalysedTexts::*const few : kTextsOfFew) {
    (this->*few).Append(texts.*few);
  }
}

void AnalysedTexts::Clear() {
  names.Clear();
  for (TextsOfFew AnalysedTexts::*const few : kTextsOfFew) {
    (this->*few).Clear();
  }
}

std::string_view AnalysisResult::SpecName(uint32_t function) const {
  if (const auto name = texts.specNames.Of(function)) {
    return *name;
  }
  if (const auto shown = texts.shownNames.Of(function)) {
    return *shown;
  }
  return CNameOfSymbol(Name(function), functions[function].flags);
}

std::string AnalysisResult::DisplayName(uint32_t function) const {
  return std::string(SpecName(function)) + DisplayMarks(functions[function].flags);
}

std::string AnalysisResult::ShownSpecName(uint32_t function) const {
  return OneLine(texts.cutSpecNames.Of(function).value_or(SpecName(function))) +
         Distinction(function);
}

std::string AnalysisResult::ShownDisplayName(uint32_t function) const {
  const auto cut = texts.cutDisplayNames.Of(function);
  return OneLine(cut ? std::string(*cut) : DisplayName(function)) + Distinction(function);
}

std::string AnalysisResult::Distinction(uint32_t function) const {
  const auto symbol = texts.symbolsToTell.Of(function);
  return symbol ? " (" + CutName(*symbol) + ")" : std::string();
}

std::optional<std::string_view> AnalysisResult::Statement(uint32_t function) const {
  const std::string_view statement = texts.statements.Of(function).value_or(SpecName(function));
  return statement.empty() ? std::nullopt : std::optional(statement);
}

std::string_view AnalysisResult::File(uint32_t file) const {
  return file == kNoFile ? std::string_view() : std::string_view(files[file]);
}

StkAppliedAdjustment AnalysisResult::Adjustment(uint32_t function) const {
  const StkAppliedAdjustment* adjustment = adjustments.Of(function);
  return adjustment != nullptr ? *adjustment : StkAppliedAdjustment();
}

uint32_t AnalysisResult::LibrarySize(uint32_t function) const {
  const uint32_t* size = librarySizes.Of(function);
  return size != nullptr ? *size : 0;
}

std::span<const uint32_t> AnalysisResult::Callees(uint32_t function) const {
  const std::span<const uint32_t> all = AllCallees(function);
  return all.first(all.size() - functions[function].extraCalleeCount);
}

std::span<const uint32_t> AnalysisResult::ExtraCallees(uint32_t function) const {
  return AllCallees(function).last(functions[function].extraCalleeCount);
}

std::span<const uint32_t> AnalysisResult::AllCallees(uint32_t function) const {
  const size_t first = functions[function].firstCall;
  const size_t next = function + size_t{1};
  const size_t end = next < functions.size() ? functions[next].firstCall : calls.size();
  return std::span(calls).subspan(first, end - first);
}

std::span<const AnalysedSite> AnalysisResult::Sites(uint32_t function) const {
  const std::vector<AnalysedSite>* sites = indirectSites.Of(function);
  return sites != nullptr ? std::span(*sites) : std::span<const AnalysedSite>();
}

ShownSizes AnalysisResult::Sizes(uint32_t function) const {
  const AnalysedFunction& analysed = functions[function];
  ShownSizes sizes;
  sizes.flags = analysed.flags;
  sizes.frameSize = analysed.frameSize;
  sizes.totalStackSize = analysed.totalStackSize;
  sizes.librarySize = LibrarySize(function);
  sizes.adjustment = adjustments.Of(function);
  return sizes;
}

}  // namespace velkor::reports
