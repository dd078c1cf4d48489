"use strict";
// Everything that comes from the archive is text: it enters the document only through textContent.
(() => {
const byId = (id) => document.getElementById(id);
const tables = JSON.parse(byId("tables").textContent);

const ROW = 28; // pixels, as in the style sheet
const TALLEST = 8e6; // pixels; browsers limit the height of an element somewhere above
const SPARE = 10; // rows drawn above and below the visible ones
const PRINTED = 1000; // rows
const SLICE = 12; // milliseconds of work before input is handled

function element(tag, options, ...children) {
  const made = document.createElement(tag);
  for (const [key, value] of Object.entries(options || {})) {
    if (key in made) made[key] = value;
    else made.setAttribute(key, value);
  }
  made.append(...children);
  return made;
}
// Wraps the contents of an element in a button.
function buttonIn(parent, act) {
  const button = element("button", { type: "button", onclick: act });
  button.setAttribute("aria-pressed", "false");
  button.append(...parent.childNodes);
  parent.append(button);
  return button;
}
const number = (value) => String(value).replace(/\B(?=(\d{3})+$)/g, ",");
const pause = () => new Promise((resume) => setTimeout(resume));
const lowerAscii = (text) => text.replace(/[A-Z]+/g, (letters) => letters.toLowerCase());

// ---- The items, one array per column.
const count = tables.items;
const item = {
  index: new Float64Array(count),
  kind: new Uint8Array(count),
  folder: new Uint32Array(count),
  time: new Float64Array(count), // seconds since 1970; NaN without a date
  bar: new Int32Array(count), // of the time line; -1 without a date
  from: new Array(count),
  label: new Array(count),
  to: new Array(count),
  cc: new Array(count),
};
const oddDates = new Map(); // dates that can't be read, by item

function barAt(time) {
  let low = 0, high = tables.bars.length - 1;
  while (low <= high) {
    const middle = (low + high) >> 1;
    if (time < tables.bars[middle][1]) high = middle - 1;
    else if (time >= tables.bars[middle][2]) low = middle + 1;
    else return middle;
  }
  return -1;
}

async function readItems() {
  let at = 0, start = performance.now();
  for (const block of document.querySelectorAll("script.rows")) {
    for (const row of JSON.parse(block.textContent)) {
      item.index[at] = row[0];
      item.kind[at] = row[1];
      item.folder[at] = row[2];
      const isDate = typeof row[3] === "number";
      item.time[at] = isDate ? row[3] : NaN;
      item.bar[at] = isDate ? barAt(row[3]) : -1;
      if (!isDate && row[3]) oddDates.set(at, row[3]);
      item.from[at] = row[4];
      item.label[at] = row[5];
      item.to[at] = row[6];
      item.cc[at] = row[7];
      ++at;
    }
    block.remove();
    if (performance.now() - start > 100) {
      byId("count").textContent = `reading … ${number(at)} of ${number(count)}`;
      await pause();
      start = performance.now();
    }
  }
}

function dateText(at) {
  if (isNaN(item.time[at])) return oddDates.get(at) || "";
  return new Date(item.time[at] * 1000).toISOString().slice(0, -5).replace("T", " ");
}
const folderPath = (at) => tables.folders[item.folder[at]][1];

// ---- What is shown: the items that match every rule, in order.
const rules = { words: [], kinds: new Set(), folder: null, since: null, until: null, person: null };
let order = new Uint32Array(0); // all items
let isHit = new Uint8Array(count); // for each item, whether it matches every rule
let view = new Uint32Array(0);
let selected = -1; // position in the view
let run = 0; // counts the searches, so that an older one stops

// Returns a pattern for each word or quoted text of a search.
function patternsOf(text) {
  const found = text.match(/"[^"]+"|[^\s"]+/g) || [];
  return found.map((word) => {
    const plain = word.replaceAll('"', "");
    const forms = new Set([plain, plain.normalize("NFC"), plain.normalize("NFD")]);
    const escaped = [...forms].map((form) => form.replace(/[\\^$.*+?()[\]{}|\/]/g, "\\$&"));
    return new RegExp(escaped.join("|"), "iu");
  });
}

const namesOf = (text) => text.split(";").map((name) => lowerAscii(name.replace(/^ +| +$/g, "")));

function keepsPerson(at) {
  return [item.from[at], item.to[at], item.cc[at]].some(
    (cell) => cell.length >= rules.person.length && namesOf(cell).includes(rules.person));
}

// Returns whether an item matches every rule except that of time.
function keepsRules(at) {
  if (rules.kinds.size && !rules.kinds.has(item.kind[at])) return false;
  if (rules.folder) {
    const place = tables.folders[item.folder[at]][0];
    if (place < rules.folder.first || place > rules.folder.last) return false;
  }
  if (rules.person !== null && !keepsPerson(at)) return false;
  return rules.words.every((word) => word.test(item.label[at]) || word.test(item.from[at]) ||
                                     word.test(item.to[at]) || word.test(item.cc[at]));
}
function keepsTime(at) {
  if (rules.since === null && rules.until === null) return true;
  const time = item.time[at];
  return !isNaN(time) && (rules.since === null || time >= rules.since) &&
         (rules.until === null || time < rules.until);
}

async function search() {
  const own = ++run;
  const hits = new Uint8Array(count);
  const inBars = new Float64Array(tables.bars.length);
  let start = performance.now();
  for (let at = 0; at < count; ++at) {
    if (keepsRules(at)) {
      if (item.bar[at] >= 0) ++inBars[item.bar[at]];
      if (keepsTime(at)) hits[at] = 1;
    }
    if ((at & 1023) === 1023 && performance.now() - start > SLICE) {
      await pause();
      if (own !== run) return;
      start = performance.now();
    }
  }
  isHit = hits;
  makeView();
  drawChart(inBars);
}

function makeView() {
  const kept = selected >= 0 ? view[selected] : -1;
  view = order.filter((at) => isHit[at] === 1);
  selected = kept >= 0 && isHit[kept] ? view.indexOf(kept) : -1;
  const isAll = view.length === count;
  byId("count").textContent = isAll ? `${number(count)} ${count === 1 ? "item" : "items"}`
                                    : `${number(view.length)} of ${number(count)} items`;
  list.setAttribute("aria-rowcount", view.length + 1);
  list.scrollTop = 0;
  select(selected);
}

// ---- Order: a rank for each item and column, computed on first use.
const columns = [
  { title: "Kind", value: (at) => tables.kinds[item.kind[at]] },
  { title: "Date", value: (at) => item.time[at] },
  { title: "From", value: (at) => item.from[at] },
  { title: "Subject or name", value: (at) => item.label[at] },
  { title: "Folder", value: folderPath },
];
let sorted = { column: null, isDown: false }; // null: the archive's order

function ranksOf(column) {
  if (column.ranks) return column.ranks;
  const ranks = new Float64Array(count);
  if (column.title === "Date") {
    for (let at = 0; at < count; ++at) ranks[at] = isNaN(item.time[at]) ? -1e12 : item.time[at];
    return column.ranks = ranks;
  }
  const keys = new Map();
  for (let at = 0; at < count; ++at) {
    const value = column.value(at);
    if (!keys.has(value)) keys.set(value, 0);
  }
  // Independent of case and of the browser's language.
  const pairs = [...keys.keys()].map((value) => [value.toLowerCase(), value]);
  const compare = (one, other) => (one < other ? -1 : one > other ? 1 : 0);
  pairs.sort((one, other) => compare(one[0], other[0]) || compare(one[1], other[1]));
  pairs.forEach((pair, rank) => keys.set(pair[1], rank));
  for (let at = 0; at < count; ++at) ranks[at] = keys.get(column.value(at));
  return column.ranks = ranks;
}

function makeOrder() {
  order = new Uint32Array(count);
  for (let at = 0; at < count; ++at) order[at] = at;
  if (sorted.column === null) return;
  const ranks = ranksOf(columns[sorted.column]);
  const sign = sorted.isDown ? -1 : 1;
  order.sort((one, other) => sign * (ranks[one] - ranks[other]) || one - other);
}

function sortBy(place) {
  if (sorted.column !== place) sorted = { column: place, isDown: false };
  else if (!sorted.isDown) sorted = { column: place, isDown: true };
  else sorted = { column: null, isDown: false };
  drawHead();
  makeOrder();
  makeView();
}

function drawHead() {
  columns.forEach((column, place) => {
    if (sorted.column !== place) column.cell.removeAttribute("aria-sort");
    else column.cell.setAttribute("aria-sort", sorted.isDown ? "descending" : "ascending");
  });
}

// ---- The list: only the visible rows are in the document.
const list = byId("list"), body = byId("body");
const tallest = () => Math.min(view.length * ROW, TALLEST);
const seen = () => Math.max(list.clientHeight - ROW, ROW); // pixels below the head
// Returns the number of rows above the first visible one. When the list is taller than an element
// may be, the scroll bar's range is scaled to it.
function firstSeen() {
  const way = tallest() - seen(), rows = view.length - seen() / ROW;
  return way <= 0 ? 0 : Math.min(list.scrollTop / way, 1) * rows;
}

function cell(text, kind) {
  return element("span", { role: "gridcell", className: kind || "", dir: "auto", title: text,
                           textContent: text });
}

function rowAt(place) {
  const at = view[place];
  const row = element("div", { className: "row", id: "row" + place },
                      cell(tables.kinds[item.kind[at]], "soft"), cell(dateText(at).replace(/:\d\d$/, ""), "date"),
                      cell(item.from[at]), cell(item.label[at]), cell(folderPath(at), "soft"));
  row.setAttribute("role", "row");
  row.setAttribute("aria-rowindex", place + 2);
  row.setAttribute("aria-selected", place === selected);
  row.onclick = () => select(place);
  return row;
}

let isDrawing = false, isPrinting = false;
function drawRows() {
  if (isPrinting) return;
  const top = firstSeen();
  const first = Math.max(Math.floor(top) - SPARE, 0);
  const end = Math.min(Math.ceil(top + seen() / ROW) + SPARE, view.length);
  const rows = [];
  for (let place = first; place < end; ++place) {
    const row = rowAt(place);
    row.style.top = list.scrollTop + (place - top) * ROW + "px";
    rows.push(row);
  }
  body.style.height = tallest() + "px";
  body.replaceChildren(...rows);
  if (selected >= first && selected < end) list.setAttribute("aria-activedescendant", "row" + selected);
  else list.removeAttribute("aria-activedescendant");
}
function drawRowsSoon() {
  if (isDrawing) return;
  isDrawing = true;
  requestAnimationFrame(() => {
    isDrawing = false;
    drawRows();
  });
}

function bringIntoView() {
  const top = firstSeen(), room = seen() / ROW;
  let wanted = top;
  if (selected < top) wanted = selected;
  else if (selected + 1 > top + room) wanted = selected + 1 - room;
  else return;
  const way = tallest() - seen(), rows = view.length - room;
  list.scrollTop = rows <= 0 ? 0 : wanted / rows * way;
}

function select(place) {
  selected = Math.max(-1, Math.min(place, view.length - 1));
  drawDetail(); // first, since it changes the height of the list
  if (selected >= 0) bringIntoView();
  drawRows();
}

function drawDetail() {
  const detail = byId("detail");
  detail.hidden = selected < 0;
  if (selected < 0) return;
  const at = view[selected];
  const lines = [
    ["Subject or name", item.label[at]], ["Kind", tables.kinds[item.kind[at]]],
    ["Date", dateText(at)], ["From", item.from[at]], ["To", item.to[at]], ["Cc", item.cc[at]],
    ["Folder", folderPath(at)], ["Index", `${item.index[at]} (olmkit show ARCHIVE ${item.index[at]})`],
  ];
  const terms = element("dl");
  for (const [title, text] of lines) {
    if (text) terms.append(element("dt", { textContent: title }),
                           element("dd", { textContent: text, dir: "auto" }));
  }
  detail.replaceChildren(terms);
}

function moveBy(event) {
  const page = Math.max(Math.floor(seen() / ROW) - 1, 1);
  const steps = { ArrowDown: 1, ArrowUp: -1, PageDown: page, PageUp: -page,
                  Home: -Infinity, End: Infinity };
  if (event.key === "Escape") return select(-1);
  if (!(event.key in steps) || event.target !== list || event.ctrlKey || event.metaKey ||
      event.altKey) return;
  event.preventDefault();
  if (view.length) select(Math.max(0, Math.min(selected + steps[event.key], view.length - 1)));
}

// ---- The rules that the user chose.
const folderRows = [...document.querySelectorAll("#folders li")];
const presses = []; // [button, whether it is pressed]

function applyRules() {
  for (const [button, isPressed] of presses) button.setAttribute("aria-pressed", isPressed());
  const chips = [];
  const chip = (text, undo) => chips.push(element("li", {}, element("button", {
    type: "button", textContent: text, dir: "auto", title: "Remove this filter",
    onclick: () => { undo(); applyRules(); } })));
  for (const kind of rules.kinds) chip(tables.kinds[kind], () => rules.kinds.delete(kind));
  if (rules.folder) chip("in " + rules.folder.name, () => { rules.folder = null; });
  if (rules.person !== null) chip("with " + rules.personName, () => { rules.person = null; });
  if (rules.since !== null || rules.until !== null) {
    const day = (time) => new Date(time * 1000).toISOString().split("T")[0];
    const from = rules.since === null ? "" : "from " + day(rules.since);
    const to = rules.until === null ? "" : "to " + day(rules.until - 1);
    chip(`${from} ${to}`.trim(), () => setSpan(null, null));
  }
  byId("rules").replaceChildren(...chips);
  search();
}

function setSpan(since, until) {
  rules.since = since;
  rules.until = until;
  const day = (time) => (time === null ? "" : new Date(time * 1000).toISOString().split("T")[0]);
  byId("since").value = day(since);
  byId("until").value = day(until === null ? null : until - 1);
}

function takeDates() {
  const time = (id) => (byId(id).value ? Date.parse(byId(id).value) / 1000 : null);
  rules.since = time("since");
  const until = time("until");
  rules.until = until === null ? null : until + 86400;
  applyRules();
}

function makeChoices() {
  for (const head of document.querySelectorAll("#kinds [data-kind]")) {
    const kind = Number(head.dataset.kind);
    const button = buttonIn(head, () => {
      if (!rules.kinds.delete(kind)) rules.kinds.add(kind);
      applyRules();
    });
    presses.push([button, () => rules.kinds.has(kind)]);
  }
  folderRows.forEach((row, first) => {
    const last = first + row.querySelectorAll("li").length;
    const title = row.querySelector(".f");
    const folder = { first, last, name: title.textContent };
    const button = buttonIn(title, () => {
      rules.folder = rules.folder === folder ? null : folder;
      applyRules();
    });
    presses.push([button, () => rules.folder === folder]);
  });
  document.querySelectorAll("#people tbody th").forEach((head, place) => {
    const name = tables.people[place], person = lowerAscii(name);
    const button = buttonIn(head, () => {
      rules.person = rules.person === person ? null : person;
      rules.personName = name;
      applyRules();
    });
    presses.push([button, () => rules.person === person]);
  });
}

// ---- The time line.
const chart = byId("chart"), bars = tables.bars;
let drag = null; // bars [from, to] while the pointer is down
let lastInBars = new Float64Array(bars.length);

function svg(tag, attributes, text) {
  const made = document.createElementNS("http://www.w3.org/2000/svg", tag);
  for (const [key, value] of Object.entries(attributes)) made.setAttribute(key, value);
  if (text !== undefined) made.textContent = text;
  return made;
}

function drawChart(inBars) {
  lastInBars = inBars;
  if (!bars.length) return;
  const width = chart.clientWidth || 800, height = 96, foot = 16, top = 14;
  const step = Math.min(width / bars.length, 48);
  const most = Math.max(...bars.map((bar) => bar[3]));
  const tall = (items) => (items ? Math.max((height - foot - top) * items / most, 1.5) : 0);
  const room = Math.max(step - (step > 4 ? 2 : 0.2), 0.5);
  const picture = svg("svg", { viewBox: `0 0 ${width} ${height}`, preserveAspectRatio: "none",
                               role: "img", "aria-label": "Items by date; the table below has the same numbers" });
  const chosen = drag ? [Math.min(...drag), Math.max(...drag)] : chosenBars();
  if (chosen) picture.append(svg("rect", { class: "zone", x: chosen[0] * step, y: 0,
                                           width: (chosen[1] - chosen[0] + 1) * step,
                                           height: height - foot }));
  let labelEnd = -Infinity;
  bars.forEach(([label, , , items], place) => {
    const x = place * step, base = height - foot;
    if (label === "") {
      picture.append(svg("path", { class: "gap", d: `M${x + step / 2} ${base - 22}v20` }));
      return;
    }
    const group = svg("g", {});
    group.append(svg("title", {}, `${label}: ${number(items)}` +
      (inBars[place] === items ? "" : `, ${number(inBars[place])} of them shown`)));
    group.append(svg("rect", { x, y: 0, width: step, height: base, fill: "transparent" }));
    group.append(svg("rect", { class: "all", x: x + (step - room) / 2, y: base - tall(items),
                               width: room, height: tall(items) }));
    group.append(svg("rect", { class: "hit", x: x + (step - room) / 2, y: base - tall(inBars[place]),
                               width: room, height: tall(inBars[place]) }));
    picture.append(group);
    // Wide bars have their own label; otherwise only the first bar of a year has one.
    const year = label.slice(0, 4), isNewYear = place === 0 || bars[place - 1][0].slice(0, 4) !== year;
    const text = step >= 44 ? label : year;
    if ((text === label || isNewYear) && x >= labelEnd) {
      picture.append(svg("text", { x: x + 1, y: height - 4 }, text));
      labelEnd = x + text.length * 7 + 4;
    }
  });
  picture.append(svg("line", { class: "base", x1: 0, x2: bars.length * step, y1: height - foot,
                               y2: height - foot }));
  picture.append(svg("text", { x: 1, y: 10 }, `max: ${number(most)}`));
  chart.replaceChildren(picture);
}

// Returns the first and last bar in the chosen span, or null.
function chosenBars() {
  if (rules.since === null && rules.until === null) return null;
  const inside = bars.map((bar, place) => place).filter((place) =>
    (rules.until === null || bars[place][1] < rules.until) &&
    (rules.since === null || bars[place][2] > rules.since));
  return inside.length ? [inside[0], inside[inside.length - 1]] : null;
}

function barOf(event) {
  const step = Math.min(chart.clientWidth / bars.length, 48);
  const x = event.clientX - chart.getBoundingClientRect().left;
  return Math.max(0, Math.min(Math.floor(x / step), bars.length - 1));
}

function makeChart() {
  chart.onpointerdown = (event) => {
    if (event.button) return;
    chart.setPointerCapture(event.pointerId);
    drag = [barOf(event), barOf(event)];
    drawChart(lastInBars);
  };
  chart.onpointermove = (event) => {
    if (!drag || drag[1] === barOf(event)) return;
    drag[1] = barOf(event);
    drawChart(lastInBars);
  };
  chart.onpointercancel = () => { drag = null; drawChart(lastInBars); };
  chart.onpointerup = () => {
    if (!drag) return;
    const since = bars[Math.min(...drag)][1], until = bars[Math.max(...drag)][2];
    drag = null;
    // Choosing the same span again removes it.
    if (rules.since === since && rules.until === until) setSpan(null, null);
    else setSpan(since, until);
    applyRules();
  };
  byId("since").onchange = byId("until").onchange = takeDates;
}

// ---- Printing: paper doesn't scroll.
addEventListener("beforeprint", () => {
  isPrinting = true;
  const rows = [];
  for (let place = 0; place < Math.min(view.length, PRINTED); ++place) rows.push(rowAt(place));
  if (view.length > PRINTED) {
    rows.push(element("p", { textContent: `… and ${number(view.length - PRINTED)} more` }));
  }
  body.replaceChildren(...rows);
});
addEventListener("afterprint", () => {
  isPrinting = false;
  drawRows();
});

// ---- Start.
async function start() {
  for (const id of ["search", "items"]) byId(id).hidden = false;
  for (const id of ["chart", "span"]) byId(id).hidden = bars.length === 0;
  byId("months").open = false;
  byId("times").hidden = bars.length === 0;
  byId("text").disabled = true;
  await readItems();
  byId("text").disabled = false;
  columns.forEach((column, place) => {
    column.cell = element("div", {}, element("button", { type: "button", textContent: column.title,
                                                         onclick: () => sortBy(place) }));
    column.cell.setAttribute("role", "columnheader");
    byId("head").append(column.cell);
  });
  makeChoices();
  makeChart();
  byId("text").oninput = () => {
    rules.words = patternsOf(byId("text").value);
    search();
  };
  list.onkeydown = moveBy;
  list.onscroll = drawRowsSoon;
  new ResizeObserver(drawRowsSoon).observe(list);
  new ResizeObserver(() => drawChart(lastInBars)).observe(chart);
  makeOrder();
  search();
}
start();
})();
