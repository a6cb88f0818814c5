#pragma once

#include <string>

#include "extract/assembly_node.h"
#include "results/result_data.h"

/// The blocks of the text that Copy puts on the clipboard. Each function appends one block to
/// `text`. Columns are five blanks apart, lines end in "\r\n", an empty cell reads "-".
namespace results {

void AppendFileInfoText(const SectionRows& rows, std::wstring& text);
void AppendBomText(const SectionRows& rows, std::wstring& text);
void AppendAttributeText(const SectionRows& rows, std::wstring& text);
void AppendPmiText(const SectionRows& rows, std::wstring& text);

/// All parts in full, whatever the list shows closed. A side that has no such attribute has an
/// empty cell, one that has it without a value "-".
void AppendPartAttributeText(const ResultData& data, std::wstring& text);

/// Both trees; a root may be null.
void AppendProductStructureText(const extract::AssemblyNode* referenceRoot,
                                const extract::AssemblyNode* compareRoot, std::wstring& text);

/// One tree under its caption, with ten more blanks for each generation.
void AppendTreeText(const extract::AssemblyNode* root, const std::wstring& caption,
                    std::wstring& text);

/// Appends one entry per node below the root, in pre-order: twice its level in blanks and its
/// name, and the text of its state. Nothing for null. No recursion.
void FlattenPSTreeForExport(const extract::AssemblyNode* root, Texts& names, Texts& states);

}  // namespace results
