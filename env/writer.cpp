#include "env/writer.hpp"

#include "env/handle.hpp"
#include "env/line_writer.hpp"
#include "env/report.hpp"

namespace kv::env {

namespace {

// Keeps an element, and all that it is in, from being freed by the sink.
class Pin {
  public:
    explicit Pin(Element &element) : element_(element) { ++element_.pins; }
    Pin(const Pin &) = delete;
    Pin &operator=(const Pin &) = delete;
    ~Pin() { --element_.pins; }

  private:
    Element &element_;
};

void open_element(LineWriter &lines, int level, const Element &element) {
    const bool section = element.is_section();
    const std::string_view before = section ? "[" : "";
    const std::string_view behind = section ? "]" : " =";
    switch (element.type) {
        case ENV_TYPE_DATA:
            lines.write(level, {before, element.name_view(), behind, element.text});
            break;
        case ENV_TYPE_BLOCK:
            lines.write(level, {before, element.name_view(), behind, section ? "" : "{"});
            break;
        default:  // an external is not written
            break;
    }
}

void close_element(LineWriter &lines, int level, const Element &element) {
    if (element.type == ENV_TYPE_BLOCK && !element.is_section()) lines.write(level, {"}"});
}

}  // namespace

void write_text(Sink &sink, ENV *env) {
    if (env->is_subenv()) {
        report("can not write subenv");
        return;
    }
    constexpr int kIndentation = 2;
    const Use use(env);
    LineWriter lines(sink);
    int level = 1;
    for (Element *element = env->sections.first; element != nullptr;) {
        {
            const Pin pin(*element);
            open_element(lines, level, *element);
            if (const List *list = element->list(); list != nullptr && list->first != nullptr) {
                element = list->first;
                level += kIndentation;
                continue;
            }
            close_element(lines, level, *element);
        }
        while (element->next == nullptr && !element->is_section()) {
            element = element->parent->owner;
            level -= kIndentation;
            const Pin pin(*element);
            close_element(lines, level, *element);
        }
        element = element->next;
    }
}

}  // namespace kv::env
