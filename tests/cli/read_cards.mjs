// Prints the cards in the files whose names stand on standard input (with NUL between them) as JSON.
// usage: read_cards.mjs PATH_OF_ICAL_JS
import fs from "node:fs";
import { pathToFileURL } from "node:url";

const { default: ICAL } = await import(pathToFileURL(process.argv[2]));
const cards = [];
for (const path of fs.readFileSync(0, "utf8").split("\0")) {
  const found = ICAL.parse(fs.readFileSync(path, "utf8"));
  cards.push(...(found[0] === "vcard" ? [found] : found));
}
console.log(JSON.stringify(cards));
