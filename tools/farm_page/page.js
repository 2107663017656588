"use strict";

// The farm as `krvsim dump --format json` writes it, before and, if there is one, after a rehearsal.
const data = JSON.parse(document.getElementById("data").textContent);
const page = document.getElementById("page");
const details = document.getElementById("details");
const isBoth = data.after !== null;

// Every text becomes a text node: nothing in the data is ever read as markup.
function make(tag, attributes, ...children) {
  const element = document.createElement(tag);
  for (const [name, value] of Object.entries(attributes)) {
    if (value !== null) element.setAttribute(name, value);
  }
  element.append(...children);
  return element;
}

// Bytes that are not text come in hexadecimal.
function textOf(value) {
  return typeof value === "string" ? value : "0x" + value.hex;
}

// A text of a disc or of a service, whose direction marks end with it.
function foreign(value) {
  return make("bdi", {}, textOf(value));
}

function counted(number, one, many) {
  return number.toLocaleString("en") + " " + (number === 1 ? one : many);
}

function sizeText(bytes) {
  const units = ["B", "KB", "MB", "GB", "TB", "PB", "EB"];
  let unit = 0;
  while (bytes >= 1000 && unit + 1 < units.length) {
    bytes /= 1000;
    unit += 1;
  }
  return (unit === 0 || bytes >= 100 ? Math.round(bytes) : bytes.toFixed(1)) + " " + units[unit];
}

function durationText(microseconds) {
  const seconds = microseconds / 1e6;
  if (seconds < 1) return "0 s";
  if (seconds < 120) return Math.round(seconds) + " s";
  const minutes = Math.round(seconds / 60);
  return minutes < 60 ? minutes + " min" : Math.floor(minutes / 60) + " h " + (minutes % 60) + " min";
}

// A farm, the name of its column, and where to look things up.
function readFarm(farm, moment) {
  return {
    moment,
    farm,
    jukeboxes: new Map(farm.jukeboxes.map((jukebox) => [jukebox.id, jukebox])),
    volumes: new Map(farm.volumes.map((volume) => [volume.id, volume])),
  };
}

const farms = isBoth ? [readFarm(data.before, "before"), readFarm(data.after, "after")] : [readFarm(data.before, "")];

function volumesOf(farm, medium) {
  if (medium === null) return [];
  return medium.sides.filter((side) => side.volume !== null).map((side) => farm.volumes.get(side.volume))
    .filter((volume) => volume !== undefined);
}

// The used share of a medium in per cent; null if it has no volume with a known size.
function usedShare(volumes) {
  let total = 0;
  let used = 0;
  for (const volume of volumes) {
    total += volume.total;
    used += volume.total - Math.min(volume.free, volume.total);
  }
  return total > 0 ? Math.round((100 * used) / total) : null;
}

function familyOf(type) {
  const families = [["CD", "cd"], ["DVD", "dvd"], ["BD", "bd"], ["MO", "mo"], ["PDD", "mo"], ["UDO", "mo"]];
  const found = families.find(([prefix]) => type.startsWith(prefix));
  return found === undefined ? "other" : found[1];
}

const signs = { "unknown": "?", "not present": "–", "scan failed": "!" };

// ---- Slots. A place is what one button stands for.

const placeOf = new Map();

function signatureOf(farm, slot) {
  return JSON.stringify([slot, volumesOf(farm, slot.medium)]);
}

function labelOf(place, volumes, share) {
  const { slot, isChanged } = place;
  const parts = [place.name + ": " + slot.state];
  if (slot.medium !== null) parts.push(slot.medium.type);
  parts.push(...volumes.map((volume) => textOf(volume.label) || "volume " + volume.id));
  if (share !== null) parts.push(share + " % used");
  if (isChanged) parts.push("changed");
  return parts.join(", ");
}

const emptySlot = make("div", { role: "button", class: "slot", tabindex: "-1" });

// There may be thousands: a slot is one element with one text. Browsers take twice as long for a real button.
function makeSlot(place) {
  const { farm, slot } = place;
  const volumes = volumesOf(farm, slot.medium);
  const share = usedShare(volumes);
  const button = emptySlot.cloneNode();
  if (place.isChanged) button.className = "slot changed";
  button.setAttribute("data-state", slot.state);
  button.setAttribute("aria-label", labelOf(place, volumes, share));
  let text = slot.slot + " " + (signs[slot.state] || "");
  if (slot.medium !== null) {
    button.setAttribute("data-family", familyOf(slot.medium.type));
    if (share !== null) button.style.setProperty("--used-part", share + "%");
    text += "\n" + slot.medium.type;
  }
  button.textContent = text;
  placeOf.set(button, place);
  return button;
}

// What the browser lays out at a time: the style sheet divides it into rows.
const partSize = 60;

function makePart(slots) {
  const part = make("div", { class: "part" }, ...slots);
  part.style.setProperty("--count", String(slots.length));
  return part;
}

// The slots of a magazine, or the media of a station or of the shelf. One of them is a tab stop; the arrow keys lead to
// the others.
function makeSlots(farm, where, noun, slots, others) {
  const group = make("div", { class: "slots", role: "group", "aria-label": where });
  const buttons = slots.map((slot, index) => {
    const other = others === null ? null : others[index];
    const isChanged =
      isBoth && (!other || signatureOf(farm, slot) !== signatureOf(farms[farm === farms[0] ? 1 : 0], other));
    return makeSlot({ farm, slot, where, name: noun + " " + slot.slot, isChanged });
  });
  for (let first = 0; first < buttons.length; first += partSize) {
    group.append(makePart(buttons.slice(first, first + partSize)));
  }
  if (buttons.length > 0) buttons[0].tabIndex = 0;
  return group;
}

function queueSlots(media) {
  return media.map((medium, index) => ({ slot: index + 1, state: "full", medium }));
}

function makeQueue(farm, where, title, media, others) {
  if (media.length === 0 && (others === null || others.length === 0)) return [];
  const heading = make("h3", {}, title + " ", make("span", { class: "soft" }, counted(media.length, "medium", "media")));
  return [heading, makeSlots(farm, where, "medium", queueSlots(media), others === null ? null : queueSlots(others))];
}

// ---- Jukeboxes

// Whether the other farm says something else; false if there is only one farm.
function differs(mine, other) {
  return isBoth && JSON.stringify(mine) !== JSON.stringify(other);
}

function markIf(isChanged) {
  return isChanged ? [make("span", { class: "mark" }, " ◆ changed")] : [];
}

function makeDrives(jukebox, other) {
  const list = make("ul", { class: "drives", "aria-label": "Drives" });
  jukebox.drives.forEach((drive, index) => {
    const name = [drive.vendor, drive.product, drive.revision].map(textOf).filter((word) => word !== "").join(" ");
    const item = make("li", {}, "Drive " + drive.drive + ": ", foreign(name), drive.enabled ? "" : " (disabled)");
    item.append(...markIf(other && differs(drive, other.drives[index])));
    list.append(item);
  });
  return list;
}

function makeJukeboxColumn(view, id, other) {
  const column = make("div", {});
  const jukebox = view.jukeboxes.get(id);
  if (view.moment !== "") column.append(make("p", { class: "side-name" }, view.moment));
  if (jukebox === undefined) {
    column.append(make("p", {}, "There is no such jukebox."));
    return column;
  }
  const name = textOf(jukebox.name) + (view.moment === "" ? "" : ", " + view.moment);
  const facts = [jukebox.enabled ? "enabled" : "disabled", jukebox.double_sided ? "handles double-sided media" : ""];
  const headers = (one) => one && [one.name, one.enabled];
  const known = isBoth ? [foreign(jukebox.name), ", "] : [];
  column.append(make("p", {}, ...known, facts.filter((fact) => fact !== "").join(", "),
    ...markIf(differs(headers(jukebox), headers(other)))));
  if (jukebox.drives.length > 0) column.append(makeDrives(jukebox, other));
  jukebox.magazines.forEach((magazine, index) => {
    const otherMagazine = other && other.magazines[index];
    const full = magazine.slots.filter((slot) => slot.medium !== null).length;
    column.append(
      make("h3", {}, "Magazine " + magazine.magazine + " ",
        make("span", { class: "soft" }, full + " of " + counted(magazine.slots.length, "slot", "slots") + " full" +
          (magazine.present ? "" : ", not present")),
        ...markIf(differs(magazine.present, otherMagazine && otherMagazine.present))),
      makeSlots(view, name + ", magazine " + magazine.magazine, "slot", magazine.slots,
        isBoth ? (otherMagazine || { slots: [] }).slots : null));
  });
  const queues = [["Import station", "waiting"], ["Export station", "exported"]];
  for (const [title, field] of queues) {
    column.append(...makeQueue(view, name + ", " + title.toLowerCase(), title, jukebox[field],
      isBoth ? (other || { [field]: [] })[field] : null));
  }
  return column;
}

function makeJukebox(id) {
  const latest = farms.findLast((view) => view.jukeboxes.has(id));
  const heading = make("h2", {}, foreign(latest.jukeboxes.get(id).name), " ", make("span", { class: "soft" }, "jukebox " + id));
  const columns = make("div", { class: "columns" });
  farms.forEach((view, index) => {
    columns.append(makeJukeboxColumn(view, id, isBoth ? farms[1 - index].jukeboxes.get(id) : undefined));
  });
  return make("section", { class: "jukebox", "data-jukebox": id }, heading, columns);
}

function makeShelf() {
  if (farms.every((view) => view.farm.shelf.length === 0)) return [];
  const columns = make("div", { class: "columns" });
  farms.forEach((view, index) => {
    const other = isBoth ? farms[1 - index].farm.shelf : null;
    const where = "shelf" + (view.moment === "" ? "" : ", " + view.moment);
    columns.append(make("div", {}, ...makeQueue(view, where, "Shelf", view.farm.shelf, other)));
  });
  return [make("section", { id: "shelf" }, make("h2", {}, "Outside of the jukeboxes"), columns)];
}

// ---- The volumes of a slot

function makeFacts(pairs) {
  const list = make("dl", {});
  for (const [name, value] of pairs) list.append(make("dt", {}, name), make("dd", {}, value));
  return list;
}

function factsOfVolume(volume) {
  const directories = volume.directories.map(textOf).join(", ");
  return [
    ["Volume", String(volume.id)],
    ["Label", foreign(volume.label)],
    ["State", volume.state],
    ["Type", volume.type],
    ["File system", foreign(volume.file_system)],
    ["Size", sizeText(volume.total)],
    ["Free", sizeText(volume.free)],
    ["Directory", foreign(directories)],
  ].filter(([name, value]) => name === "Label" || value !== "" && value.textContent !== "");
}

function makeSide(farm, side, index) {
  const volume = side.volume === null ? undefined : farm.volumes.get(side.volume);
  const facts = [["Content", side.content + ", " + side.finalization]];
  if (volume !== undefined) facts.push(...factsOfVolume(volume));
  else if (side.volume !== null) facts.push(["Volume", String(side.volume)]);
  return [make("h3", {}, "Side " + "AB"[index]), makeFacts(facts)];
}

let shownSlot = null;

function closeDetails() {
  if (shownSlot === null) return;
  details.hidden = true;
  shownSlot.removeAttribute("aria-current");
  shownSlot.focus();
  shownSlot = null;
}

function showDetails(button) {
  const { farm, slot, where, name } = placeOf.get(button);
  if (shownSlot !== null) shownSlot.removeAttribute("aria-current");
  shownSlot = button;
  button.setAttribute("aria-current", "true");
  const heading = make("h2", { id: "details-title", tabindex: "-1" }, foreign(where), ", " + name);
  const close = make("button", { type: "button", class: "close", "aria-label": "Close" }, "✕");
  close.addEventListener("click", closeDetails);
  details.replaceChildren(heading, close);
  details.append(makeFacts([["State", slot.state], ["Medium", slot.medium === null ? "none" : slot.medium.type]]));
  if (slot.medium !== null) {
    slot.medium.sides.forEach((side, index) => details.append(...makeSide(farm, side, index)));
  }
  details.hidden = false;
  heading.focus({ preventScroll: true });
}

// ---- Keys

function moveFocus(from, to) {
  if (!to) return;
  from.tabIndex = -1;
  to.tabIndex = 0;
  to.focus();
}

// The slots are in rows of the same length.
function rowLength(slot) {
  return Number(getComputedStyle(slot.parentElement).getPropertyValue("--columns"));
}

function onKey(event) {
  if (event.key === "Escape") {
    closeDetails();
    return;
  }
  const slot = event.target.closest && event.target.closest("#page .slot");
  if (!slot || event.ctrlKey || event.altKey || event.metaKey) return;
  const slots = [...slot.closest(".slots").querySelectorAll(".slot")];
  const index = slots.indexOf(slot);
  const targets = {
    ArrowLeft: () => index - 1,
    ArrowRight: () => index + 1,
    ArrowUp: () => index - rowLength(slot),
    ArrowDown: () => index + rowLength(slot),
    Home: () => 0,
    End: () => slots.length - 1,
  };
  if (event.key !== "Enter" && event.key !== " " && !(event.key in targets)) return;
  event.preventDefault();
  if (event.key in targets) moveFocus(slot, slots[targets[event.key]()]);
  else if (!event.repeat) showDetails(slot);
}

function onClick(event) {
  const slot = event.target.closest("#page .slot");
  if (slot === null) return;
  for (const other of slot.closest(".slots").querySelectorAll("[tabindex='0']")) other.tabIndex = -1;
  slot.tabIndex = 0;
  showDetails(slot);
}

// ---- The plan, the calls and the output of a rehearsal

function makePlan() {
  if (data.plan === null) return [];
  const section = make("section", { id: "plan" }, make("h2", {}, "What changed"));
  section.append(make("p", {}, data.plan.groups.length === 0 ? "Nothing." : data.plan.count + "."));
  const effects = { adds: "+", removes: "−", alters: "~" };
  for (const group of data.plan.groups) {
    const list = make("ul", { class: "plan" });
    for (const line of group.lines) {
      const word = make("span", { class: line.effect }, effects[line.effect] + " " + line.word);
      list.append(make("li", {}, word, " ", foreign(line.text)));
    }
    const place = group.jukebox === 0 ? ["Outside of the jukeboxes"] : ["Jukebox ", foreign(group.name)];
    if (group.magazine !== 0) place.push(", magazine " + group.magazine);
    section.append(make("h3", {}, ...place), list);
  }
  return [section];
}

function makeBars(call, end) {
  const percent = (part) => (end === 0 ? 0 : (100 * part) / end) + "%";
  const cell = make("td", { class: "span" });
  const add = (kind, start, length) => {
    const bar = make("span", { class: kind });
    bar.style.left = percent(start);
    bar.style.width = percent(length);
    cell.append(bar);
  };
  if (call.duration > 0) add("bar", call.start, call.duration);
  if (call.moving > 0) add("bar moving", call.start, call.moving);
  return cell;
}

function makeCall(call, end) {
  const result = call.succeeded ? [call.change === "" ? "ok" : foreign(call.change)]
    : ["failed with " + call.code + ": ", foreign(call.text)];
  return make("tr", call.succeeded ? {} : { class: "failed" },
    make("td", { class: "number" }, durationText(call.start)),
    makeBars(call, end),
    make("td", { class: "number" }, durationText(call.duration)),
    make("td", {}, foreign(call.function)),
    make("td", {}, foreign(call.item), call.argument === "" ? "" : " “", foreign(call.argument), call.argument === "" ? "" : "”"),
    make("td", {}, ...result));
}

function doesSomething(call) {
  return !call.succeeded || call.duration > 0 || call.change !== "";
}

function makeCalls() {
  if (data.calls === null) return [];
  const end = data.calls.reduce((latest, call) => Math.max(latest, call.start + call.duration), 0);
  const body = make("tbody", {});
  const fill = (calls) => body.replaceChildren(...calls.map((call) => makeCall(call, end)));
  const active = data.calls.filter(doesSomething);
  const failed = data.calls.filter((call) => !call.succeeded).length;
  const all = make("input", { type: "checkbox", id: "all-calls" });
  all.addEventListener("change", () => fill(all.checked ? data.calls : active));
  fill(active);
  const titles = ["Start", "Time", "Duration", "Call", "Item", "Result"];
  return [make("section", { id: "calls" },
    make("h2", {}, "Calls"),
    make("p", {}, counted(data.calls.length, "call", "calls") + ", " + failed + " failed; " + durationText(end) +
      " in simulated time. ", make("span", { class: "key moving" }), " the robot moves ",
      make("span", { class: "key" }), " the drive works"),
    make("p", { class: "controls" }, make("label", {}, all, " also the calls that only look")),
    make("table", {},
      make("thead", {}, make("tr", {}, ...titles.map((title) => make("th", { scope: "col" }, title)))), body))];
}

function makeOutput() {
  if (data.output === null) return [];
  return [make("section", { id: "output" }, make("h2", {}, "Output"), make("pre", { tabindex: "0" }, foreign(data.output)))];
}

// ---- All volumes, drawn when they are asked for

// Where the sides of each volume are.
function placesByVolume(view) {
  const found = new Map();
  for (const place of placeOf.values()) {
    if (place.farm !== view || place.slot.medium === null) continue;
    place.slot.medium.sides.forEach((side, index) => {
      if (side.volume === null) return;
      const text = place.where + ", " + place.name + ", side " + "AB"[index];
      found.set(side.volume, [...(found.get(side.volume) || []), text]);
    });
  }
  return found;
}

function fillVolumes(table, view) {
  const titles = ["Volume", "Label", "State", "Type", "File system", "Size", "Free", "Where"];
  const where = placesByVolume(view);
  const body = make("tbody", {});
  for (const volume of view.farm.volumes) {
    body.append(make("tr", {},
      make("td", { class: "number" }, String(volume.id)),
      make("td", {}, foreign(volume.label)),
      make("td", {}, volume.state),
      make("td", {}, volume.type),
      make("td", {}, foreign(volume.file_system)),
      make("td", { class: "number" }, sizeText(volume.total)),
      make("td", { class: "number" }, sizeText(volume.free)),
      make("td", {}, foreign((where.get(volume.id) || []).join("; ")))));
  }
  table.append(make("thead", {}, make("tr", {}, ...titles.map((title) => make("th", { scope: "col" }, title)))), body);
}

function makeVolumes() {
  const view = farms[farms.length - 1];
  const table = make("table", {});
  const box = make("details", { id: "volumes", "aria-label": "All volumes" },
    make("summary", {}, "All volumes" + (isBoth ? ", after" : "")), table);
  box.addEventListener("toggle", () => {
    if (box.open && !table.hasChildNodes()) fillVolumes(table, view);
  });
  return make("section", {}, make("h2", {}, "Volumes"), box);
}

// ---- The head

function summaryOf(farm) {
  let slots = 0;
  // The service does not know a volume before its medium is imported; until then its ID is negative.
  const waiting = farm.volumes.filter((volume) => volume.id < 0).length;
  let media = farm.shelf.length;
  for (const jukebox of farm.jukeboxes) {
    media += jukebox.waiting.length + jukebox.exported.length;
    for (const magazine of jukebox.magazines) {
      slots += magazine.slots.length;
      media += magazine.slots.filter((slot) => slot.medium !== null).length;
    }
  }
  return [counted(farm.jukeboxes.length, "jukebox", "jukeboxes"), counted(slots, "slot", "slots"),
    counted(media, "medium", "media"), counted(farm.volumes.length - waiting, "volume", "volumes"),
    waiting === 0 ? "" : counted(waiting, "volume waits", "volumes wait") + " for import",
    farm.running ? "" : "the service is stopped"].filter((part) => part !== "").join(", ");
}

function makeHead() {
  const server = textOf(data.before.server);
  const title = (isBoth ? "Rehearsal on server " : "Farm of server ");
  document.title = title + server;
  document.querySelector("h1").replaceChildren(title, foreign(server));
  document.getElementById("summary").append(...(isBoth
    ? ["Before: " + summaryOf(data.before) + ".", make("br", {}), "After: " + summaryOf(data.after) + "."]
    : [summaryOf(data.before) + "."]));
  document.getElementById("remarks").append(...data.remarks.map((remark) => make("li", {}, foreign(remark))));
  const legend = [["CD", "full", "cd"], ["DVD", "full", "dvd"], ["BD", "full", "bd"], ["MO, PDD, UDO", "full", "mo"],
    ["other medium", "full", "other"], ["empty", "empty", null], ["? not read yet", "unknown", null],
    ["! scan failed", "scan failed", null], ["– not present", "not present", null]];
  for (const [text, state, family] of legend) {
    document.getElementById("legend").append(make("li", {},
      make("span", { class: "slot", "data-state": state, "data-family": family, "aria-hidden": "true" }), text));
  }
  if (isBoth) document.getElementById("legend").append(make("li", {}, make("span", { class: "mark" }, "◆"), "changed"));
}

function draw() {
  document.body.classList.toggle("both", isBoth);
  makeHead();
  const ids = new Set(farms.flatMap((view) => [...view.jukeboxes.keys()]));
  page.append(...makePlan(), ...[...ids].map(makeJukebox), ...makeShelf(), makeVolumes(), ...makeCalls(), ...makeOutput());
  document.addEventListener("click", onClick);
  document.addEventListener("keydown", onKey);
}

draw();
