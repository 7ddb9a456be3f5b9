#include "CreateReport.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace orvane {
namespace {

TEST(CreationReport, AlwaysHasTheSameMembers) {
    const auto empty = nlohmann::json::parse(jsonOfReport({}));
    EXPECT_EQ(empty, nlohmann::json::parse(R"({"path":null,"created":false,"nodes":0,"variables":[],"script":null,"error":null})"));
}

TEST(CreationReport, TellsEverything) {
    CreationReport report;
    report.path = "/x/Acme";
    report.created = true;
    report.nodes = 13;
    report.variables = {{"A", "1"}, {"A", "2"}};
    report.script = ScriptReport{"/s/x.sh", 3, {}};
    report.error = ShownAlert{"T", "M"};
    EXPECT_EQ(nlohmann::json::parse(jsonOfReport(report)), nlohmann::json::parse(R"({
        "path": "/x/Acme", "created": true, "nodes": 13,
        "variables": [{"name": "A", "value": "1"}, {"name": "A", "value": "2"}],
        "script": {"path": "/s/x.sh", "status": 3}, "error": {"title": "T", "message": "M"}})"));
}

TEST(CreationReport, IsOneLine) {
    CreationReport report;
    report.path = "/a\nb";
    const std::string text = jsonOfReport(report);
    EXPECT_EQ(text.find('\n'), text.size() - 1);
}

TEST(CreationReport, AScriptThatDidNotEndHasNoStatus) {
    CreationReport report;
    report.script = ScriptReport{"/s/x.sh", {}, {}};
    EXPECT_TRUE(nlohmann::json::parse(jsonOfReport(report))["script"]["status"].is_null());
}

TEST(CreationReport, ADryRunShowsTreeAndScript) {
    CreationReport report;
    TreeItem top;
    top.name = "T";
    top.isFolder = true;
    report.tree = Tree{top};
    report.script = ScriptReport{"/s/x.sh", {}, "does not exist"};
    EXPECT_EQ(textOfDryRun(report, {}), "T/\n\n1 folder, 0 files\nscript: /s/x.sh  ! does not exist\n");
    const auto json = nlohmann::json::parse(jsonOfReport(report));
    EXPECT_EQ(json["tree"]["name"], "T");
    EXPECT_EQ(json["script"]["problem"], "does not exist");
}

} // namespace
} // namespace orvane
