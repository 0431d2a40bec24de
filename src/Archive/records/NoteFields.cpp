#include "Archive/records/NoteFields.h"

namespace Archive {

std::vector<NoteBlockOf> blocksOf(const PhoneBackup::NoteBody &body)
{
    std::vector<NoteBlockOf> blocks;
    blocks.reserve(body.blocks.size());
    for (const PhoneBackup::NoteBlock &block : body.blocks)
        blocks.push_back({ body, block });
    return blocks;
}

void fields(FieldWriter &field, const NoteBlockOf &of)
{
    const PhoneBackup::NoteBlock &block = of.block;
    std::vector<NoteRunOf> runs;
    runs.reserve(std::size_t(block.runCount));
    for (const PhoneBackup::NoteRun &run : of.body.runsOf(block))
        runs.push_back({ of.body, run });
    field("kind", block.kind);
    field("list", block.list);
    field("level", block.level, 0);
    field("number", block.number, 0);
    field("checked", block.isChecked);
    field("quote", block.isQuote);
    field("inParagraph", block.isInParagraph);
    field("runs", runs);
    if (block.table < 0)
        return;
    const PhoneBackup::NoteTable &table = *of.body.tables[std::size_t(block.table)];
    std::vector<std::vector<NoteBlockOf>> cells;
    cells.reserve(table.cells.size());
    for (const PhoneBackup::NoteBody &cell : table.cells)
        cells.push_back(blocksOf(cell));
    field("columns", table.columns);
    field("rightToLeft", table.isRightToLeft);
    field("cells", cells);
}

} // namespace Archive
