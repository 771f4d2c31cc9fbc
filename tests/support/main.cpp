// All tests of one ring are one program. "--file tiling" runs only the tests of tiling_test.cpp. A filter
// given in addition chooses among those.

#include <algorithm>
#include <filesystem>
#include <fnmatch.h>
#include <gtest/gtest.h>
#include <iostream>
#include <optional>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

namespace
{

// Returns the value of "--file NAME" and removes both from the arguments.
std::optional<std::string> take_file(std::vector<char *> &arguments)
{
    const auto option = std::ranges::find(arguments, std::string_view{"--file"}, [](const char *argument) {
        return std::string_view{argument != nullptr ? argument : ""};
    });
    if (option == arguments.end() || *(option + 1) == nullptr)
        return std::nullopt;
    std::string name = *(option + 1);
    arguments.erase(option, option + 2);
    return name;
}

bool matches_any(const std::string &patterns, const std::string &name)
{
    std::istringstream list{patterns};
    for (std::string pattern; std::getline(list, pattern, ':');)
        if (fnmatch(pattern.c_str(), name.c_str(), 0) == 0)
            return true;
    return false;
}

// Applies a filter as the framework does. The patterns before a dash choose tests, and those after it exclude
// tests.
bool passes(const std::string &filter, const std::string &name)
{
    const size_t dash = filter.find('-');
    const std::string wanted = filter.substr(0, dash);
    const std::string unwanted = dash != std::string::npos ? filter.substr(dash + 1) : "";
    return (wanted.empty() || matches_any(wanted, name)) && !matches_any(unwanted, name);
}

// Returns the full names of the tests that the file defines.
std::vector<std::string> tests_of(const std::string &file)
{
    std::vector<std::string> names;
    const testing::UnitTest &all = *testing::UnitTest::GetInstance();
    for (int s = 0; s < all.total_test_suite_count(); s++) {
        const testing::TestSuite &suite = *all.GetTestSuite(s);
        for (int t = 0; t < suite.total_test_count(); t++) {
            const testing::TestInfo &info = *suite.GetTestInfo(t);
            if (std::filesystem::path{info.file()}.filename() == file + "_test.cpp")
                names.push_back(std::string{suite.name()} + '.' + info.name());
        }
    }
    return names;
}

void narrow_filter_to(const std::vector<std::string> &names)
{
    const std::string filter = GTEST_FLAG_GET(filter);
    std::string exact;
    for (const std::string &name : names)
        if (passes(filter, name))
            exact += name + ':';
    GTEST_FLAG_SET(filter, exact.empty() ? "-*" : exact);
}

} // namespace

int main(int argc, char **argv)
{
    std::vector<char *> arguments{argv, argv + argc + 1};
    const std::optional<std::string> file = take_file(arguments);
    int count = int(arguments.size()) - 1;
    testing::InitGoogleTest(&count, arguments.data());
    if (count > 1) {
        std::cerr << "unknown argument " << arguments[1] << '\n';
        return 2;
    }
    if (!file)
        return RUN_ALL_TESTS();
    const std::vector<std::string> names = tests_of(*file);
    if (names.empty()) {
        std::cerr << "this program has no test of " << *file << "_test.cpp\n";
        return 1;
    }
    narrow_filter_to(names);
    return RUN_ALL_TESTS();
}
