#include "readers/module_entry.h"

#include "readers/library_table.h"

namespace velkor {

namespace {

constexpr uint32_t kPrologueHelperSize = 2;  // what one call of it took of the stack, in bytes

uint32_t SeriesOfFamily(std::string_view family, const StkMessages& messages) {
  const std::string_view familyName = messages.Text(MessageKey::kFamilyName);
  if (family == familyName || family == messages.Text(MessageKey::kFamilyBannerName)) {
    return StkCompilerInfo::SeriesCode(familyName);
  }
  return 0;
}

}  // namespace

ModuleEntry::ModuleEntry(const std::string& modulePath, ModuleDestination destination, Host& host,
                         StkReporter& reporter)
    : modulePath_(modulePath), destination_(destination), host_(host), reporter_(reporter) {}

bool ModuleEntry::AcceptHeader(const HeaderLine& header) {
  const uint32_t series = SeriesOfFamily(header.family, reporter_.Messages());
  if (series == 0) {
    reporter_.PostWarning(MessageKey::kW9434, {modulePath_});
    return false;
  }
  StkCompilerInfo& projectInfo = destination_.project.compilerInfo;
  const bool isFirst = projectInfo.series == 0;
  moduleInfo_.AdoptOrMatchSeries(series);
  moduleInfo_.AdoptOrMatchVersion(header.version);
  projectInfo.AdoptOrMatchSeries(series);
  if (!projectInfo.AdoptOrMatchVersion(header.version)) {
    reporter_.PostWarning(MessageKey::kW9435, {modulePath_});
    return false;
  }
  if (isFirst) {
    LoadRuntimeNameSet(destination_.project, host_, reporter_);
  }
  return true;
}

void ModuleEntry::SetSourceFile(std::string_view fileName) {
  currentFile_ = &destination_.files.Intern(fileName);
}

void ModuleEntry::AddFunction(const ModuleFunction& function) {
  StkFunction& record = destination_.functions.AddDefined(function.name, *currentFile_);
  if (!function.isStatic) {
    record.flags |= FN_GLOBAL;
  }
  if (function.presetMargin) {
    record.SetFixedExtra();
  }
  currentRecord_ = &record;
  if (function.runtimeCalls.CallsHelpers(function.name)) {
    AddRuntimeHelpers(function);
  }
  record.frameSize = FrameSize(function);
}

void ModuleEntry::AddCallee(std::string_view name) {
  currentRecord_->AddCallName(name);
}

void ModuleEntry::AddIndirectCall() {
  currentRecord_->flags |= FN_INDIRECT_CALL;
}

void ModuleEntry::AddRuntimeHelpers(const ModuleFunction& function) {
  if (!moduleInfo_.RuntimeHelpersAccepted()) {
    if (!versionWarned_) {
      reporter_.PostWarning(MessageKey::kW9433, {moduleInfo_.VersionText()});
      versionWarned_ = true;
    }
    return;
  }
  for (const uint32_t helper : function.runtimeCalls.Helpers(function.name)) {
    if (IsInHelperTable(function.runtimeCalls, helper)) {
      currentRecord_->AddCallName("_@" + std::string(function.runtimeCalls.HelperName(helper)));
    }
  }
}

bool ModuleEntry::IsInHelperTable(const StkRuntimeCallTable& calls, uint32_t helper) {
  if (helper >= listed_.size()) {
    listed_.resize(helper + 1, Listed::kNotLookedUp);
  }
  Listed& listed = listed_[helper];
  if (listed == Listed::kNotLookedUp) {
    const std::string name = "@" + std::string(calls.HelperName(helper));
    listed = destination_.project.runtimeNames.Contains(name) ? Listed::kYes : Listed::kNo;
  }
  return listed == Listed::kYes;
}

uint32_t ModuleEntry::FrameSize(const ModuleFunction& function) const {
  const uint32_t figure = function.stackFigure;
  if (figure == kOverSize || !moduleInfo_.OldStackFigure()) {
    return figure;
  }
  const uint64_t correction =
      uint64_t{kPrologueHelperSize} * function.runtimeCalls.Cprep2Count(function.name);
  // A figure that does not contain its correction is kept: the result must not be too small.
  return figure < correction ? figure : figure - static_cast<uint32_t>(correction);
}

}  // namespace velkor
