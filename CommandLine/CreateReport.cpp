#include "CreateReport.h"

#include "JSONWriter.h"
#include "Translation.h"
#include "TreeDrawing.h"

namespace orvane {

namespace {

void writeVariables(JSONWriter &writer, const std::vector<PromptValueRow> &variables) {
    writer.beginArray();
    for (const PromptValueRow &row : variables) {
        writer.beginObject().key("name").string(row.key).key("value").string(row.value).endObject();
    }
    writer.endArray();
}

void writeScript(JSONWriter &writer, const std::optional<ScriptReport> &script) {
    if (!script) {
        writer.null();
        return;
    }
    writer.beginObject().key("path").string(script->path).key("status");
    if (script->status) {
        writer.number(*script->status);
    } else {
        writer.null();
    }
    if (!script->problem.empty()) {
        writer.key("problem").string(script->problem);
    }
    writer.endObject();
}

void writeError(JSONWriter &writer, const std::optional<ShownAlert> &error) {
    if (!error) {
        writer.null();
        return;
    }
    writer.beginObject().key("title").stringOrNull(error->title).key("message").stringOrNull(error->message).endObject();
}

} // namespace

std::string jsonOfReport(const CreationReport &report) {
    JSONWriter writer;
    writer.beginObject();
    writer.key("path").stringOrNull(report.path);
    writer.key("created").boolean(report.created);
    writer.key("nodes").number(static_cast<std::int64_t>(report.nodes));
    writeVariables(writer.key("variables"), report.variables);
    writeScript(writer.key("script"), report.script);
    writeError(writer.key("error"), report.error);
    if (report.tree) {
        writeTree(writer.key("tree"), *report.tree);
    }
    writer.endObject();
    return writer.text() + "\n";
}

std::string textOfDryRun(const CreationReport &report, const TextStyle &style) {
    std::string text;
    if (report.tree && !report.tree->empty()) {
        text = drawTree(*report.tree, style) + "\n" + countOfTree(*report.tree) + "\n";
    }
    if (report.script) {
        text += localized("script: %1", {printable(report.script->path)});
        text += report.script->problem.empty() ? "" : "  " + std::string(style.unicode ? "⚠" : "!") + " " + report.script->problem;
        text += '\n';
    }
    return text;
}

} // namespace orvane
