#pragma once

#include <algorithm>
#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace velkor::testing {

// A small slow reading of call graph files, word by word as they are defined, without objects: what
// a title names, what each function calls, and the largest way down from it. Knows nothing of weak
// functions.
class LiteralBuild {
 public:
  struct Function {
    uint64_t frame = 0;
    bool isDefined = false;
    bool isDynamic = false;
    bool isIndirect = false;
    std::set<std::string> callees;  // by key
  };

  void Add(const std::string& module, const std::string& text) {
    const auto between = [](const std::string& line, const std::string& start,
                            const std::string& end) {
      const size_t from = line.find(start);
      if (from == std::string::npos) {
        return std::string();
      }
      const size_t begin = from + start.size();
      return line.substr(begin, line.find(end, begin) - begin);
    };
    std::string title;
    for (size_t begin = 0; begin < text.size();) {
      const size_t end = text.find('\n', begin);
      const std::string line = text.substr(begin, end - begin);
      begin = end == std::string::npos ? text.size() : end + 1;
      if (line.starts_with("graph:")) {
        title = between(line, "title: \"", "\"") + ":";
      } else if (line.starts_with("node:") && line.find("shape : ellipse") == std::string::npos) {
        Function& function = Of(module, title, between(line, "title: \"", "\""));
        function.isDefined = true;
        const size_t bytes = line.find(" bytes (");
        const size_t number = line.rfind("\\n", bytes) + 2;
        function.frame = std::stoull(line.substr(number, bytes - number));
        function.isDynamic = line.find(" bytes (dynamic)") != std::string::npos;
      } else if (line.starts_with("edge:")) {
        Function& caller = Of(module, title, between(line, "sourcename: \"", "\""));
        const std::string target = between(line, "targetname: \"", "\"");
        if (target == "__indirect_call") {
          caller.isIndirect = true;
        } else {
          Of(module, title, target);
          caller.callees.insert(Key(module, title, target));
        }
      }
    }
  }

  // The largest sum of frames on a way that meets no function twice; only asked where no function
  // below can reach itself.
  uint64_t TotalOf(const std::string& key) {
    const auto known = totals_.find(key);
    if (known != totals_.end()) {
      return known->second;
    }
    uint64_t largest = 0;
    for (const std::string& callee : functions[key].callees) {
      largest = std::max(largest, TotalOf(callee));
    }
    return totals_[key] = functions[key].frame + largest;
  }

  std::set<std::string> Below(const std::string& key) const {
    std::set<std::string> met;
    std::vector<std::string> waiting(functions.at(key).callees.begin(),
                                     functions.at(key).callees.end());
    while (!waiting.empty()) {
      const std::string next = waiting.back();
      waiting.pop_back();
      if (met.insert(next).second) {
        waiting.insert(waiting.end(), functions.at(next).callees.begin(),
                       functions.at(next).callees.end());
      }
    }
    return met;
  }

  std::map<std::string, Function> functions;  // by module and symbol; global ones by the symbol

 private:
  static std::string Symbol(const std::string& title, const std::string& name) {
    const std::string symbol = name.starts_with(title) ? name.substr(title.size()) : name;
    return symbol.starts_with("*") ? symbol.substr(1) : symbol;
  }
  static std::string Key(const std::string& module, const std::string& title,
                         const std::string& name) {
    return (name.starts_with(title) ? module + "#" : "") + Symbol(title, name);
  }
  Function& Of(const std::string& module, const std::string& title, const std::string& name) {
    Function& function = functions[Key(module, title, name)];
    return function;
  }

  std::map<std::string, uint64_t> totals_;
};

}  // namespace velkor::testing
