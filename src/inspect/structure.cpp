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

std::string OwnerText(const Structure& structure, const std::string& path) {
  std::string text(KindWords(structure.kind));
  if (structure.kind == StructureKind::kFileHeader) return text;
  text += (structure.kind == StructureKind::kMatrix ? " " : " of ") + path;
  if (structure.place.field > 0) text += ", field " + std::to_string(structure.place.field);
  if (structure.place.record > 0) text += ", record " + std::to_string(structure.place.record);
  return text;
}

}  // namespace orv::inspect
