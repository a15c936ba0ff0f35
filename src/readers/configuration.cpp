#include "readers/configuration.h"

#include <algorithm>
#include <charconv>
#include <initializer_list>
#include <iterator>
#include <limits>
#include <toml++/toml.h>
#include <utility>

#include "files/near_words.h"
#include "readers/library_statements.h"

namespace velkor {
namespace {

TextPlace PlaceIn(const toml::source_region& source) {
  return {source.begin.line, source.begin.column};
}

class ConfigurationReader {
 public:
  ReadConfigurationResult Read(std::string_view text) {
    try {
      const toml::table root = toml::parse(text);
      ReadRoot(root);
    } catch (const toml::parse_error& error) {
      faults_.push_back({PlaceIn(error.source()), std::string(error.description())});
    }
    std::ranges::stable_sort(faults_, {}, &ConfigurationFault::place);
    if (!faults_.empty()) {
      return {std::nullopt, std::move(faults_)};
    }
    std::ranges::stable_sort(configuration_.stacks, {}, &Configuration::Stack::place);
    return {std::move(configuration_), {}};
  }

 private:
  template <typename Target>
  struct Key {
    std::string_view name;
    void (ConfigurationReader::*read)(const toml::node& value, Target& target);
  };

  void Fail(const toml::node& node, std::string text) {
    faults_.push_back({PlaceIn(node.source()), std::move(text)});
  }

  // Hands each value to what reads its key. path: of the table, with a dot behind it.
  template <typename Target>
  void ReadTable(const toml::table& table, const std::string& path,
                 std::initializer_list<Key<Target>> keys, Target& target) {
    for (const auto& [key, value] : table) {
      const auto known = std::ranges::find(keys, key.str(), &Key<Target>::name);
      if (known != keys.end()) {
        configuration_.places[path + std::string(key.str())] = PlaceIn(key.source());
        (this->*known->read)(value, target);
        continue;
      }
      std::string text = "unknown key \"" + std::string(key.str()) + "\"";
      std::vector<std::string> names;
      std::ranges::transform(keys, std::back_inserter(names),
                             [](const Key<Target>& each) { return std::string(each.name); });
      const std::string nearest = NearestWord(key.str(), names);
      text += nearest.empty() ? "" : "; near it: \"" + nearest + "\"";
      faults_.push_back({PlaceIn(key.source()), std::move(text)});
    }
  }

  const toml::table* TableOf(const toml::node& value) {
    if (!value.is_table()) {
      Fail(value, "a table is wanted here");
    }
    return value.as_table();
  }

  void Take(const toml::node& value, std::string& text) {
    if (const auto* string = value.as_string(); string != nullptr && !string->get().empty()) {
      text = string->get();
    } else {
      Fail(value, "a text is wanted here");
    }
  }

  void Take(const toml::node& value, uint32_t& number) {
    const auto* integer = value.as_integer();
    if (integer != nullptr && integer->get() >= 0 &&
        integer->get() <= std::numeric_limits<int32_t>::max()) {
      number = static_cast<uint32_t>(integer->get());
    } else {
      Fail(value, "a number from 0 to 2147483647 is wanted here");
    }
  }

  template <typename Value>
  void Take(const toml::node& value, std::optional<Value>& taken) {
    taken = Value();
    Take(value, *taken);
  }

  void Take(const toml::node& value, Configuration::Name& name) {
    name.place = PlaceIn(value.source());
    Take(value, name.text);
  }

  // Bytes or a text.
  void Take(const toml::node& value, Configuration::Size& taken) {
    if (value.is_string()) {
      Take(value, taken.emplace<std::string>());
    } else {
      Take(value, taken.emplace<uint32_t>());
    }
  }

  // Bytes or "10%".
  void Take(const toml::node& value, Configuration::Headroom& headroom) {
    const std::string text = value.value_or(std::string());
    headroom.isPercent = value.is_string();
    if (!headroom.isPercent) {
      Take(value, headroom.amount);
      return;
    }
    const char* const end = text.data() + text.size();
    const auto [next, error] = std::from_chars(text.data(), end, headroom.amount);
    if (error != std::errc() || std::string_view(next, end) != "%" || headroom.amount > 100) {
      Fail(value, "bytes or a text like \"10%\" is wanted here");
    }
  }

  // One, or a list of them.
  template <typename Item>
  void Take(const toml::node& value, std::vector<Item>& items) {
    if (const toml::array* array = value.as_array()) {
      for (const toml::node& each : *array) {
        Take(each, items.emplace_back());
      }
    } else {
      Take(value, items.emplace_back());
    }
  }

  template <auto Member, typename Target>
  void Set(const toml::node& value, Target& target) {
    Take(value, target.*Member);
  }

  void ReadRoot(const toml::table& root) {
    using C = Configuration;
    ReadTable<C>(root, "",
                 {{"schema", &ConfigurationReader::ReadSchema},
                  {"input", &ConfigurationReader::Set<&C::input, C>},
                  {"exclude", &ConfigurationReader::Set<&C::exclude, C>},
                  {"elf", &ConfigurationReader::Set<&C::elf, C>},
                  {"load", &ConfigurationReader::ReadLoad},
                  {"target", &ConfigurationReader::Set<&C::target, C>},
                  {"rtos", &ConfigurationReader::Set<&C::rtos, C>},
                  {"vectors", &ConfigurationReader::Set<&C::vectors, C>},
                  {"frame", &ConfigurationReader::Set<&C::frame, C>},
                  {"switch", &ConfigurationReader::Set<&C::contextSwitch, C>},
                  {"stack", &ConfigurationReader::ReadStacks},
                  {"interrupts", &ConfigurationReader::ReadInterrupts},
                  {"calls", &ConfigurationReader::ReadCalls},
                  {"gate", &ConfigurationReader::ReadGate}},
                 configuration_);
    if (configuration_.input.empty() && faults_.empty()) {
      faults_.push_back(
          {{1, 1}, "\"input\" is missing: a folder, a list of folders or a project file"});
    }
    CheckStackOfInterrupts();
  }

  void CheckStackOfInterrupts() {
    const std::string stack =
        configuration_.interrupts ? configuration_.interrupts->stack : std::string();
    const auto& stacks = configuration_.stacks;
    if (!stack.empty() &&
        std::ranges::find(stacks, stack, &Configuration::Stack::name) == stacks.end()) {
      faults_.push_back({configuration_.PlaceOf("interrupts.stack"),
                         "there is no [stack." + stack + "], which is to carry the interrupts"});
    }
  }

  void ReadSchema(const toml::node& value, Configuration& /*configuration*/) {
    const auto* number = value.as_integer();
    if (number == nullptr || number->get() != 1) {
      Fail(value, "this velkor knows schema 1 only");
    }
  }

  void ReadLoad(const toml::node& value, Configuration& configuration) {
    Take(value, configuration.load);
    const auto check = [this](const toml::node& node) {
      const auto* name = node.as_string();
      if (name != nullptr && IsStatementTable(name->get()) && !StatementTable(name->get())) {
        Fail(node,
             "there is no table of statements \"" + name->get() + R"(": "velkor:newlib" is one)");
      }
    };
    if (const toml::array* array = value.as_array()) {
      for (const toml::node& each : *array) {
        check(each);
      }
    } else {
      check(value);
    }
  }

  void ReadStacks(const toml::node& value, Configuration& configuration) {
    const toml::table* stacks = TableOf(value);
    if (stacks == nullptr) {
      return;
    }
    for (const auto& [name, node] : *stacks) {
      if (const toml::table* table = TableOf(node)) {
        using S = Configuration::Stack;
        S& stack = configuration.stacks.emplace_back();
        stack.name = name.str();
        stack.place = PlaceIn(name.source());
        const size_t before = faults_.size();
        ReadTable<S>(*table, "stack." + stack.name + ".",
                     {{"entry", &ConfigurationReader::Set<&S::entries, S>},
                      {"size", &ConfigurationReader::Set<&S::size, S>},
                      {"reserve", &ConfigurationReader::Set<&S::reserve, S>},
                      {"frame", &ConfigurationReader::Set<&S::frame, S>},
                      {"switch", &ConfigurationReader::Set<&S::contextSwitch, S>}},
                     stack);
        if (stack.entries.empty() && faults_.size() == before) {
          faults_.push_back({stack.place, "\"entry\" of [stack." + stack.name + "] is missing"});
        }
      }
    }
  }

  void ReadInterrupts(const toml::node& value, Configuration& configuration) {
    if (const toml::table* table = TableOf(value)) {
      using I = Configuration::Interrupts;
      configuration.interrupts = I();
      I& interrupts = *configuration.interrupts;
      ReadTable<I>(*table, "interrupts.",
                   {{"stack", &ConfigurationReader::Set<&I::stack, I>},
                    {"levels", &ConfigurationReader::ReadLevels},
                    {"nesting", &ConfigurationReader::Set<&I::nesting, I>},
                    {"ignore", &ConfigurationReader::Set<&I::ignore, I>}},
                   interrupts);
      if (interrupts.nesting && interrupts.levels) {
        faults_.push_back({configuration_.PlaceOf("interrupts.nesting"),
                           R"("levels" and "nesting" exclude each other)"});
      }
    }
  }

  void ReadLevels(const toml::node& value, Configuration::Interrupts& interrupts) {
    const toml::array* levels = value.as_array();
    if (levels == nullptr) {
      Fail(value, "a list of lists of handlers is wanted here");
      return;
    }
    interrupts.levels.emplace();
    for (const toml::node& level : *levels) {
      if (!level.is_array()) {
        Fail(level, "a list of handlers is wanted here");
      } else {
        Take(level, interrupts.levels->emplace_back());
      }
    }
  }

  void ReadCalls(const toml::node& value, Configuration& configuration) {
    const toml::table* calls = TableOf(value);
    if (calls == nullptr) {
      return;
    }
    for (const auto& [name, node] : *calls) {
      if (const toml::table* table = TableOf(node)) {
        using C = Configuration::Call;
        C& call = configuration.calls.emplace_back();
        call.function = {std::string(name.str()), PlaceIn(name.source())};
        ReadTable<C>(*table, "calls." + call.function.text + ".",
                     {{"table", &ConfigurationReader::Set<&C::table, C>},
                      {"total", &ConfigurationReader::Set<&C::total, C>}},
                     call);
        if (table->empty()) {
          Fail(node, R"("table" or "total" is wanted here)");
        }
      }
    }
  }

  void ReadGate(const toml::node& value, Configuration& configuration) {
    if (const toml::table* table = TableOf(value)) {
      using G = Configuration::Gate;
      ReadTable<G>(*table, "gate.",
                   {{"headroom", &ConfigurationReader::Set<&G::headroom, G>},
                    {"growth", &ConfigurationReader::Set<&G::growth, G>}},
                   configuration.gate);
    }
  }

  Configuration configuration_;
  std::vector<ConfigurationFault> faults_;
};

}  // namespace

ReadConfigurationResult ReadConfiguration(std::string_view text) {
  return ConfigurationReader().Read(text);
}

}  // namespace velkor
