#include "client/html_report.h"

namespace vexahealth {

std::string_view HtmlStyle() {
  return R"(
:root {
  --page: #f3f4f6; --paper: #fff; --ink: #14181d; --soft: #56606c; --line: #dde1e6; --faint: #eef0f3;
  --bar: #2c6e9b; --act: #a8201a; --act-back: #fdecea; --watch: #7d5200; --watch-back: #fdf3dc;
  --good: #17693f; --good-back: #e4f4ea; --unknown: #46505b; --unknown-back: #e9ecf0;
}
@media screen and (prefers-color-scheme: dark) {
  :root {
    --page: #0f1216; --paper: #171b21; --ink: #e8ebef; --soft: #9ba6b3; --line: #2c333c; --faint: #20262d;
    --bar: #5fa8d6; --act: #ff9d92; --act-back: #431a18; --watch: #f0c25c; --watch-back: #3a2c0c;
    --good: #74d6a0; --good-back: #12331f; --unknown: #b4bdc8; --unknown-back: #2a313a;
  }
}
* { box-sizing: border-box; }
html { color-scheme: light dark; -webkit-text-size-adjust: 100%; }
body {
  margin: 0; background: var(--page); color: var(--ink);
  font: 15px/1.5 "Segoe UI Variable Text", "Segoe UI", system-ui, -apple-system, Roboto, "Noto Sans", "DejaVu Sans",
        sans-serif;
  font-variant-numeric: tabular-nums; overflow-wrap: anywhere;
}
main { max-width: 70rem; margin: 0 auto; padding: clamp(1rem, 3vw, 2.5rem) clamp(.75rem, 3vw, 2rem) 3rem; }
h1, h2, h3, p, dl, dd, ul, ol, figure { margin: 0; padding: 0; }
ul, ol { list-style: none; }
h1 { font-size: clamp(1.6rem, 4vw, 2.2rem); line-height: 1.15; font-weight: 650; letter-spacing: -.015em; text-wrap: balance; }
h2 { font-size: 1.2rem; line-height: 1.3; font-weight: 650; letter-spacing: -.005em; margin-bottom: 1rem; }
h3 { font-size: .95rem; line-height: 1.35; font-weight: 650; }
a { color: inherit; }
header { padding: 0 .25rem; }
.eyebrow { color: var(--soft); font-size: .8rem; letter-spacing: .08em; text-transform: uppercase; margin-bottom: .35rem; }
.facts { display: flex; flex-wrap: wrap; gap: .5rem 2rem; margin-top: 1rem; }
.facts dt, .tile dt { color: var(--soft); font-size: .8rem; line-height: 1.4; }
.notice { margin-top: 1rem; padding: .55rem .8rem; border-left: 3px solid var(--line); color: var(--soft); font-size: .87rem; }
.notice.loud { border-color: var(--act); background: var(--act-back); color: var(--ink); }
nav { display: flex; flex-wrap: wrap; gap: .25rem 1.1rem; margin: 1.25rem .25rem 0; font-size: .87rem; }
nav a { color: var(--soft); text-decoration: none; border-bottom: 1px solid var(--line); }
nav a:hover, nav a:focus-visible { color: var(--ink); border-color: currentColor; }
section { margin-top: 1.25rem; padding: clamp(1rem, 2.5vw, 1.6rem); background: var(--paper); border: 1px solid var(--line); border-radius: 10px; }
.badge { display: inline-block; padding: .1rem .55rem; border-radius: 999px; font-size: .8rem; font-weight: 600; white-space: nowrap; }
.badge.act { color: var(--act); background: var(--act-back); }
.badge.watch { color: var(--watch); background: var(--watch-back); }
.badge.good { color: var(--good); background: var(--good-back); }
.badge.unknown, .badge.not_there { color: var(--unknown); background: var(--unknown-back); }
.counts { display: flex; flex-wrap: wrap; gap: .5rem; margin-bottom: .6rem; }
.counts .badge { font-size: .9rem; font-weight: 400; padding: .2rem .75rem; }
.verdicts li { display: grid; grid-template-columns: 6rem minmax(0, 1fr) minmax(0, 1.15fr); gap: .25rem 1.25rem; padding: .8rem 0; border-top: 1px solid var(--line); }
.verdicts li:first-child { border-top: 0; }
.rule { color: var(--soft); font-size: .82rem; line-height: 1.45; }
.rule b { font-weight: 600; }
.tiles { display: grid; grid-template-columns: repeat(auto-fill, minmax(max(8.75rem, 23%), 1fr)); gap: .6rem; margin-bottom: 1rem; }
.tile { padding: .6rem .75rem .65rem; background: var(--faint); border-radius: 8px; }
.tile b { white-space: nowrap; font-size: 1.35rem; line-height: 1.25; font-weight: 600; letter-spacing: -.01em; }
.tile b.text { font-size: 1.1rem; line-height: 1.55; }
.tile .unit { color: var(--soft); font-size: .85rem; }
.tile.missing dd { color: var(--soft); font-size: .9rem; line-height: 2; }
.charge { display: block; width: 100%; height: 8px; border-radius: 4px; overflow: hidden; margin-bottom: 1.25rem; }
.figures { display: grid; grid-template-columns: repeat(auto-fit, minmax(min(100%, 17rem), 1fr)); gap: 1rem 1.5rem; align-items: end; margin: .75rem 0 1rem; }
figure { max-width: 30rem; min-width: 0; }
figcaption, .caption { font-size: .87rem; color: var(--soft); margin-bottom: .25rem; }
figcaption b, .caption b { color: var(--ink); font-weight: 650; }
svg { display: block; width: 100%; height: auto; }
svg text { font-size: 11px; fill: var(--soft); text-anchor: middle; }
svg .count { fill: var(--ink); font-weight: 600; }
svg .name { text-anchor: end; fill: var(--ink); font-size: 12px; }
svg .value { text-anchor: end; fill: var(--ink); font-size: 12px; }
svg .bar, svg .dot { fill: var(--bar); }
svg .track { fill: var(--line); }
svg .axis, svg .grid { stroke: var(--line); }
.columns { columns: 2 24rem; column-gap: 2rem; }
.columns > :last-child, .beside > :last-child, section > .block:last-child { margin-bottom: 0; }
.beside { display: grid; grid-template: "figure" "long" "short" / minmax(0, 1fr); gap: 1.25rem 2rem; }
.beside > .figure { grid-area: figure; }
.beside > .long { grid-area: long; }
.beside > .short { grid-area: short; }
.block { break-inside: avoid; margin-bottom: 1.25rem; }
.block > h3, section > h3 { margin-bottom: .35rem; }
section > h3 { margin-top: 1.25rem; }
table { border-collapse: collapse; width: 100%; font-size: .9rem; }
th, td { padding: .34rem 0; border-top: 1px solid var(--line); text-align: left; vertical-align: top; }
tr:first-child > * { border-top: 0; }
tbody th { font-weight: 400; color: var(--soft); padding-right: 1rem; }
.readings th { width: 44%; }
.note { display: block; color: var(--soft); font-size: .8rem; line-height: 1.4; }
.wide { overflow-x: auto; }
.grid th, .grid td { padding: .4rem .6rem; border-top: 1px solid var(--line); }
.grid td, .grid thead th { white-space: nowrap; }
.grid thead th { border-top: 0; color: var(--soft); font-weight: 600; font-size: .8rem; }
.grid tbody th { color: var(--ink); }
.n { text-align: right !important; }
.code { font-family: ui-monospace, "Cascadia Mono", Consolas, "DejaVu Sans Mono", monospace; font-size: .82rem; }
.chosen > * { background: var(--good-back); }
.tag { color: var(--good); font-size: .78rem; font-weight: 600; }
.plain { color: var(--soft); margin-bottom: 1rem; }
.missing-list { font-size: .84rem; line-height: 1.45; color: var(--soft); margin-top: .5rem; }
.missing-list li { padding: .35rem 0 .35rem .75rem; border-left: 2px solid var(--line); margin-bottom: .35rem; }
.missing-list b { font-weight: 600; color: var(--ink); }
.missing-list .of { display: block; }
.legend div { display: grid; grid-template-columns: 8rem 1fr; gap: 1rem; padding: .3rem 0; font-size: .9rem; }
.legend dt { font-weight: 600; }
footer { margin: 1.5rem .25rem 0; color: var(--soft); font-size: .82rem; }
@media screen and (min-width: 56rem) {
  .beside { grid-template: "figure long" auto "short long" 1fr / minmax(0, 1fr) minmax(0, 1fr); }
}
@media (max-width: 52rem) {
  .verdicts li { grid-template-columns: 6rem minmax(0, 1fr); }
  .rule { grid-column: 2; }
}
@media (max-width: 32rem) {
  .verdicts li { grid-template-columns: 1fr; }
  .rule { grid-column: 1; }
  .legend div { grid-template-columns: 1fr; gap: 0; }
  .grid th, .grid td { padding-left: .25rem; padding-right: .25rem; }
  .grid .note { overflow-wrap: normal; }
  .grid .code { display: none; }
  .tiles { grid-template-columns: repeat(2, minmax(0, 1fr)); }
}
@media print {
  @page { margin: 14mm; }
  html { color-scheme: light; font-size: 9.5pt; }
  body { background: none; font-size: 1rem; print-color-adjust: exact; -webkit-print-color-adjust: exact; }
  main { max-width: none; padding: 0; }
  nav { display: none; }
  section { border: 0; border-top: 1.5pt solid var(--ink); border-radius: 0; padding: .8rem 0 0; margin-top: 1.2rem; }
  h2, h3 { break-after: avoid; }
  .verdicts li, .tile, figure, tr, .missing-list li { break-inside: avoid; }
  .verdicts li { grid-template-columns: 5.5rem 1fr 1.2fr; }
  .rule { grid-column: auto; }
  .columns { columns: 2; }
  .block { break-inside: auto; }
  .beside { display: block; }
  .beside > * { margin-bottom: 1rem; }
  figure { max-width: 9cm; }
  .figures { grid-template-columns: repeat(3, 1fr); }
}
)";
}

}  // namespace vexahealth
