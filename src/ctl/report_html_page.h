// The fixed parts of the --html page: its head with the styles, and its script. The page loads
// nothing from outside (its security policy forbids it) and builds every element with
// textContent, so a name is only ever text.
#pragma once

inline constexpr char kPageHead[] = R"page(<!DOCTYPE html>
<html lang="en">
<head>
<meta charset="utf-8">
<meta http-equiv="Content-Security-Policy" content="default-src 'none'; script-src 'unsafe-inline'; style-src 'unsafe-inline'">
<title>trovanctl report</title>
<style>
body { font: 14px/1.4 sans-serif; margin: 0; color: #222; }
header { padding: 8px 12px; background: #eef1f5; border-bottom: 1px solid #ccd; }
header h1 { font-size: 16px; margin: 0 0 6px 0; }
#search { width: 28em; padding: 3px; }
#results { padding: 0 12px; }
#results button { display: block; border: none; background: none; padding: 1px 0; color: #124; cursor: pointer; text-align: left; }
main { display: flex; gap: 16px; padding: 8px 12px; }
#treePane { flex: 3; min-width: 0; }
#side { flex: 2; min-width: 0; }
h2 { font-size: 14px; margin: 8px 0 4px 0; }
ul.tree, ul.tree ul { list-style: none; margin: 0; padding-left: 16px; }
ul.tree { padding-left: 0; }
.row { white-space: nowrap; }
.toggle { width: 20px; border: none; background: none; cursor: pointer; padding: 0; }
.name { cursor: pointer; font-family: monospace; }
.selected > .row > .name { background: #ffe9a8; }
.summary span { margin-left: 8px; font-size: 12px; color: #555; }
.summary .filter { color: #8a3b00; }
.summary .quota { color: #035; }
table { border-collapse: collapse; margin: 4px 0; }
td, th { border: 1px solid #ccd; padding: 1px 6px; text-align: left; font-size: 13px; }
.note { font-size: 12px; color: #666; }
.link { border: none; background: none; color: #124; cursor: pointer; padding: 0; font: inherit; }
</style>
</head>
<body>
<header><h1 id="title"></h1><input id="search" type="search" placeholder="Search paths and users" autocomplete="off"> <span id="count"></span></header>
<div id="results"></div>
<main>
<section id="treePane"><h2>Tree</h2><ul id="tree" class="tree"></ul></section>
<section id="side"><h2>Selected path</h2><div id="detail">Select a path in the tree.</div><div id="effective"></div>
<h2>Users</h2><div id="userDetail"></div><ul id="users"></ul></section>
</main>
)page";

inline constexpr char kPageScript[] = R"page("use strict";
const DATA = JSON.parse(document.getElementById("data").textContent);
const users = DATA.users, N = DATA.counts.length;
const PAGE = 500, ALL = "rwceafmsvx";
// Rights come as numbers, one bit a right in the order of ALL.
function letters(r) {
  let text = "";
  for (let b = 0; b < ALL.length; b++) if (r & (1 << b)) text += ALL[b];
  return text;
}
// Names: one string, each node's name from start[i] up to the '/' before start[i + 1].
const NAMES = DATA.names, start = new Int32Array(N + 1);
for (let i = 1, at = 0; i <= N; i++) { at = NAMES.indexOf("/", at); start[i] = at < 0 ? NAMES.length + 1 : ++at; }
const nameOf = (i) => NAMES.substring(start[i], start[i + 1] - 1);
// Parents come as distances back (0 for the root, whose parent is -1).
const parents = new Int32Array(N);
for (let i = 0; i < N; i++) parents[i] = i === 0 ? -1 : i - DATA.parents[i];
// Each node's trustees: user and rights pairs, from DATA.trustees[2 * tfirst[i]] on.
const tfirst = new Int32Array(N + 1);
for (let i = 0; i < N; i++) tfirst[i + 1] = tfirst[i] + DATA.counts[i];
function trusteesOf(i) {
  const t = DATA.trustees.slice(2 * tfirst[i], 2 * tfirst[i + 1]);
  for (let k = 1; k < t.length; k += 2) t[k] = letters(t[k]);
  return t;
}
// Filters and directory quotas, by node.
function byNode(pairs) {
  const map = new Map();
  for (let k = 0; k < pairs.length; k += 2) map.set(pairs[k], pairs[k + 1]);
  return map;
}
const filters = byNode(DATA.filters), quotas = byNode(DATA.quotas);
const filterOf = (i) => (filters.has(i) ? letters(filters.get(i)) : null);
const quotaOf = (i) => (quotas.has(i) ? quotas.get(i) : null);
// Children of each node, in tree order: kids[first[i] .. first[i + 1]).
const first = new Int32Array(N + 1), kids = new Int32Array(N > 0 ? N - 1 : 0);
for (let i = 1; i < N; i++) first[parents[i] + 1]++;
for (let i = 0; i < N; i++) first[i + 1] += first[i];
{ const fill = first.slice(0, N); for (let i = 1; i < N; i++) kids[fill[parents[i]]++] = i; }
const children = (i) => kids.subarray(first[i], first[i + 1]);

function el(tag, cls, text) {
  const e = document.createElement(tag);
  if (cls) e.className = cls;
  if (text !== undefined) e.textContent = text;
  return e;
}
function pathOf(i) {
  const parts = [];
  for (let n = i; n > 0; n = parents[n]) parts.push(nameOf(n));
  return "/" + parts.reverse().join("/");
}
// Each user's label, made once: the Arbor name, or "SID (name)".
const labels = users.map((x) => (x[2] ? (x[0] ? x[1] + " (" + x[0] + ")" : x[1]) : x[0]));
const userLabel = (u) => labels[u];
const kindOf = (u) => (users[u][2] ? "ad" : "arbor");
const rightsText = (r) => (r === "" ? "(none)" : r);
function table(head, rows) {
  const t = el("table"), h = el("tr");
  for (const c of head) h.append(el("th", "", c));
  t.append(h);
  for (const r of rows) {
    const tr = el("tr");
    for (const c of r) { const td = el("td"); td.append(c); tr.append(td); }
    t.append(tr);
  }
  return t;
}
function nodeLink(i) {
  const b = el("button", "link", pathOf(i));
  b.onclick = () => reveal(i);
  return b;
}

// The tree: a node's children are made only when it is opened, PAGE at a time.
const items = new Map();
function summary(i) {
  const s = el("span", "summary"), t = trusteesOf(i);
  for (let k = 0; k < t.length; k += 2)
    s.append(el("span", "trustee", userLabel(t[k]) + ": " + rightsText(t[k + 1])));
  if (filterOf(i) !== null) s.append(el("span", "filter", "filter: " + rightsText(filterOf(i))));
  if (quotaOf(i) !== null) s.append(el("span", "quota", "quota: " + quotaOf(i)));
  return s;
}
function nodeItem(i) {
  const li = el("li", "node"), row = el("div", "row");
  li.setAttribute("data-path", pathOf(i));
  li.dataset.node = i;
  const count = first[i + 1] - first[i];
  const toggle = el("button", "toggle", count ? "\u25b8" : "\u00a0");
  toggle.disabled = count === 0;
  toggle.onclick = () => (li.classList.contains("open") ? close(li) : open(li, i, 0));
  const name = el("span", "name", i === 0 ? "/" : nameOf(i));
  name.onclick = () => select(i);
  row.append(toggle, name, summary(i));
  li.append(row);
  items.set(i, li);
  return li;
}
function open(li, i, atLeast) {
  const ul = el("ul");
  li.append(ul);
  li.classList.add("open");
  li.querySelector(".toggle").textContent = "\u25be";
  more(ul, i, 0, atLeast);
}
function close(li) {
  const ul = li.querySelector(":scope > ul");
  if (ul) for (const sub of ul.querySelectorAll("li.node")) items.delete(+sub.dataset.node);
  if (ul) ul.remove();
  li.classList.remove("open");
  li.querySelector(".toggle").textContent = "\u25b8";
}
function more(ul, i, from, atLeast) {
  const list = children(i), end = Math.min(list.length, Math.max(from + PAGE, atLeast + 1));
  for (let k = from; k < end; k++) {
    ul.append(nodeItem(list[k]));
  }
  if (end >= list.length) return;
  const li = el("li", "more"), b = el("button", "link", "show more (" + (list.length - end) + " left)");
  b.onclick = () => { li.remove(); more(ul, i, end, 0); };
  li.append(b);
  ul.append(li);
}
function reveal(i) {
  const chain = [];
  for (let n = i; n >= 0; n = parents[n]) chain.push(n);
  chain.reverse();
  for (let k = 0; k + 1 < chain.length; k++) {
    const li = items.get(chain[k]);
    if (items.has(chain[k + 1])) continue;
    if (li.classList.contains("open")) close(li);
    const list = children(chain[k]);
    let at = 0;
    while (list[at] !== chain[k + 1]) at++;
    open(li, chain[k], at);
  }
  select(i);
  items.get(i).scrollIntoView({ block: "nearest" });
}

// The selected path: its own entries, and every trustee's effective rights there.
function mask(rights, filter) {
  let kept = "";
  for (const c of rights) if (c === "s" || filter.includes(c)) kept += c;
  return kept;
}
function effective(i) {
  const chain = [];
  for (let n = i; n >= 0; n = parents[n]) chain.push(n);
  let held = new Map();
  for (const n of chain.reverse()) {
    const f = filterOf(n), next = new Map();
    for (const [u, e] of held) {
      const kept = f === null ? e.rights : mask(e.rights, f);
      if (kept) next.set(u, { rights: kept, from: e.from });
    }
    const t = trusteesOf(n);
    for (let k = 0; k < t.length; k += 2) next.set(t[k], { rights: t[k + 1], from: n });
    held = next;
  }
  return [...held].sort((a, b) => (userLabel(a[0]) < userLabel(b[0]) ? -1 : 1));
}
function select(i) {
  for (const old of document.querySelectorAll(".selected")) old.classList.remove("selected");
  if (items.has(i)) items.get(i).classList.add("selected");
  const detail = document.getElementById("detail"), eff = document.getElementById("effective");
  const rows = [], t = trusteesOf(i);
  for (let k = 0; k < t.length; k += 2) rows.push(["trustee", userLabel(t[k]), kindOf(t[k]), rightsText(t[k + 1])]);
  if (filterOf(i) !== null) rows.push(["filter", "", "", rightsText(filterOf(i))]);
  if (quotaOf(i) !== null) rows.push(["dir-quota", "", "", quotaOf(i)]);
  detail.replaceChildren(el("div", "path", pathOf(i)), table(["Entry", "User", "Kind", "Rights or quota"], rows));
  const list = effective(i).map(([u, e]) => [userLabel(u), kindOf(u), e.rights.includes("s") ? ALL : e.rights, nodeLink(e.from)]);
  eff.replaceChildren(el("h2", "", "Effective rights"), el("div", "note", NOTE), table(["User", "Kind", "Rights", "From"], list));
  eff.setAttribute("data-path", pathOf(i));
}

// Users: the list, and one user's assignments across the volume.
const order = users.map((_, u) => u).sort((a, b) => (userLabel(a) < userLabel(b) ? -1 : 1));
function showUser(u) {
  const rows = [];
  let total = 0;
  const t = DATA.trustees;
  for (let i = 0; i < N; i++)
    for (let k = 2 * tfirst[i]; k < 2 * tfirst[i + 1]; k += 2)
      if (t[k] === u && total++ < PAGE) rows.push([nodeLink(i), rightsText(letters(t[k + 1]))]);
  const box = document.getElementById("userDetail");
  box.replaceChildren(el("div", "user", userLabel(u) + " (" + kindOf(u) + "), user quota: " + (users[u][3] === null ? "none" : users[u][3])),
    table(["Path", "Rights"], rows));
  if (total > PAGE) box.append(el("div", "note", "first " + PAGE + " of " + total + " assignments"));
  box.setAttribute("data-user", userLabel(u));
}
function listUsers(from) {
  const ul = document.getElementById("users"), end = Math.min(order.length, from + PAGE);
  for (let k = from; k < end; k++) {
    const li = el("li"), b = el("button", "link", userLabel(order[k]) + " (" + kindOf(order[k]) + ")");
    b.onclick = () => showUser(order[k]);
    li.append(b);
    ul.append(li);
  }
  if (end >= order.length) return;
  const li = el("li"), b = el("button", "link", "show more (" + (order.length - end) + " left)");
  b.onclick = () => { li.remove(); listUsers(end); };
  li.append(b);
  ul.append(li);
}

// Search: users whose label, and nodes whose name, hold the text; the first matches only.
function search(text) {
  const box = document.getElementById("results"), q = text.toLowerCase(), found = [];
  if (q === "") { box.replaceChildren(); return; }
  for (const u of order) {
    if (found.length >= 20) break;
    if (userLabel(u).toLowerCase().includes(q)) {
      const b = el("button", "user", "user: " + userLabel(u));
      b.onclick = () => showUser(u);
      found.push(b);
    }
  }
  let paths = 0;
  for (let i = 1; i < N && paths < 50; i++) {
    if (!nameOf(i).toLowerCase().includes(q)) continue;
    const b = el("button", "path", pathOf(i));
    b.onclick = () => reveal(i);
    found.push(b);
    paths++;
  }
  box.replaceChildren(...found);
  if (found.length === 0) box.append(el("div", "note", "nothing found"));
}
let timer = 0;
document.getElementById("search").addEventListener("input", (event) => {
  clearTimeout(timer);
  timer = setTimeout(() => search(event.target.value), 150);
});

document.getElementById("title").textContent = TITLE;
document.getElementById("count").textContent = N + " paths, " + users.length + " users";
if (N > 0) {
  const root = nodeItem(0);
  document.getElementById("tree").append(root);
  open(root, 0, 0);
}
listUsers(0);
document.body.setAttribute("data-rendered-ms", performance.now().toFixed(0));
)page";
