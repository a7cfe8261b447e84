#include "workbench/documents/TableDocument.h"

namespace wb {

std::string_view formatName(ColumnFormat format) {
    switch (format) {
    case ColumnFormat::Whole:
        return "whole";
    case ColumnFormat::Real:
        return "real";
    case ColumnFormat::Text:
        return "text";
    }
    return "real";
}

} // namespace wb
