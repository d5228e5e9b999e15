#include "inspect/structure.h"

namespace orv::inspect {

std::string_view KindWords(StructureKind kind) {
  switch (kind) {
    case StructureKind::kFileHeader:
      return "file header";
    case StructureKind::kMatrix:
      return "matrix";
    case StructureKind::kTitlePiece:
      return "title";
    case StructureKind::kFieldTable:
      return "field table";
    case StructureKind::kDescriptorBlock:
      return "descriptor array";
    case StructureKind::kDescriptor:
      return "descriptor";
    case StructureKind::kNamePiece:
      return "name";
    case StructureKind::kPointerBlock:
    case StructureKind::kFixedBlock:
      return "data";
    case StructureKind::kIndex:
      return "index";
    case StructureKind::kCell:
      return "cell";
    case StructureKind::kTextPiece:
      return "text";
  }
  return {};
}

}  // namespace orv::inspect
