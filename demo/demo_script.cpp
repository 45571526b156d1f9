// The demonstration page's script: the document view (samples, editor, pages, zoom, downloads) and the classic form.
#include "demo/demo_page.hpp"

namespace quorvel::demo {

// Hooks for the browser test, all on the body: data-state ("busy" while printing, "ready"
// after), data-renders and data-presses (finished prints of each mode); #pages carries the
// shown document's id, page count, current page and zoom.
const char* DemoScript() {
  return R"JS("use strict";
const TWIPS_PER_PIXEL = 15;  // 96 pixels an inch
const ZOOMS = [0.25, 0.5, 0.75, 1, 1.25, 1.5, 2, 3];
const $ = id => document.getElementById(id);
const body = document.body;
let busyCount = 0;

function busy(on) {
  busyCount += on ? 1 : -1;
  body.dataset.state = busyCount > 0 ? "busy" : "ready";
}

// ---- The document view ----
const view = { sample: null, id: 0, pages: [], page: 1, all: true, zoom: "fit", renders: 0, sequence: 0 };
const editor = $("editor"), pagesBox = $("pages"), errorBox = $("doc-error");

function scale() {
  if (view.zoom !== "fit") return view.zoom;
  const widest = Math.max(...view.pages.map(p => p.width / TWIPS_PER_PIXEL), 1);
  return Math.min(1.5, Math.max(0.25, (pagesBox.clientWidth - 40) / widest));
}

function sizeImage(img, page) {
  const s = scale();
  img.style.width = Math.round(page.width / TWIPS_PER_PIXEL * s) + "px";
  img.style.height = Math.round(page.height / TWIPS_PER_PIXEL * s) + "px";
}

function updateControls() {
  const count = view.pages.length;
  $("page-label").textContent = count ? `Page ${view.page} of ${count}` : "No pages";
  $("page-prev").disabled = view.page <= 1;
  $("page-next").disabled = view.page >= count;
  $("page-mode").setAttribute("aria-pressed", String(!view.all));
  $("zoom-fit").setAttribute("aria-pressed", String(view.zoom === "fit"));
  $("zoom-level").textContent = Math.round(scale() * 100) + "%";
  Object.assign(pagesBox.dataset, { document: view.id, count, page: view.page, zoom: scale().toFixed(3) });
  $("download-ops").href = view.id ? `/document/${view.id}/ops.jsonl` : "#";
}

function pageFigure(number) {
  const page = view.pages[number - 1];
  const figure = document.createElement("figure");
  figure.dataset.page = number;
  const img = new Image();
  img.alt = `Page ${number} of ${view.pages.length}`;
  // The other pages are asked for once the one in view has come (see drawPages), and those
  // further down only as they come near, so the first picture is not kept waiting.
  if (view.all && number > view.page + 1) img.loading = "lazy";
  img.dataset.src = `/document/${view.id}/${number}.svg`;
  if (number === view.page) img.src = img.dataset.src;
  sizeImage(img, page);
  const caption = document.createElement("figcaption");
  caption.textContent = img.alt;
  figure.append(img, caption);
  return figure;
}

// Shows the pages of the current document; resolves when the pictures in view have loaded.
function drawPages() {
  const numbers = view.all ? view.pages.map((_, i) => i + 1) : [view.page];
  const figures = numbers.map(pageFigure);
  pagesBox.replaceChildren(...figures);
  updateControls();
  if (view.all) scrollToPage(view.page);
  const first = figures[view.all ? view.page - 1 : 0];
  if (!first) return Promise.resolve();
  const shown = first.querySelector("img").decode().catch(() => {});
  shown.then(() => { for (const img of pagesBox.querySelectorAll("img:not([src])")) img.src = img.dataset.src; });
  return shown;
}

// Scrolls the pages box only (scrollIntoView would scroll the whole window on a small screen).
function scrollToPage(number) {
  const figure = pagesBox.querySelector(`figure[data-page="${number}"]`);
  if (figure) pagesBox.scrollTop = figure.offsetTop - pagesBox.firstElementChild.offsetTop;
}

function rescale() {
  for (const img of pagesBox.querySelectorAll("img")) sizeImage(img, view.pages[img.parentNode.dataset.page - 1]);
  updateControls();
}

function showError(text) {
  errorBox.textContent = text;
  errorBox.hidden = !text;
  editor.setAttribute("aria-invalid", String(Boolean(text)));
}

// Prints what the editor holds. A print started later wins: an older answer is dropped.
async function printDocument(firstPage) {
  const sequence = ++view.sequence;
  busy(true);
  pagesBox.setAttribute("aria-busy", "true");
  try {
    const response = await fetch("/document", { method: "POST", body: editor.value, headers: { "Content-Type": "application/json" } });
    const answer = await response.json();
    if (sequence !== view.sequence) return;
    if (!answer.ok) { showError(answer.error); return; }
    showError("");
    Object.assign(view, { id: answer.id, pages: answer.pages });
    view.page = firstPage ? 1 : Math.min(view.page, answer.pages.length);
    await drawPages();
  } catch (e) {
    if (sequence === view.sequence) showError("The demonstration server did not answer: " + e);
  } finally {
    pagesBox.setAttribute("aria-busy", "false");
    if (sequence === view.sequence) body.dataset.renders = ++view.renders;
    busy(false);
  }
}

// Puts a sample in the editor (its text fetched unless given) and prints it.
async function pickSample(name, button, text) {
  for (const b of $("sample-list").children) b.setAttribute("aria-pressed", String(b === button));
  view.sample = name;
  if (text === undefined) {
    busy(true);
    try {
      text = await (await fetch(`/sample/${name}.json`)).text();
    } finally {
      busy(false);
    }
  }
  editor.value = text;
  await printDocument(true);
}

function goToPage(number) {
  view.page = Math.max(1, Math.min(view.pages.length, number));
  if (view.all) {
    scrollToPage(view.page);
    updateControls();
  } else {
    drawPages();
  }
}

function setZoom(zoom) {
  view.zoom = zoom;
  rescale();
}

function zoomStep(direction) {
  const now = scale();
  const next = direction > 0 ? ZOOMS.find(z => z > now + 0.001) : [...ZOOMS].reverse().find(z => z < now - 0.001);
  if (next) setZoom(next);
}

async function downloadPdf() {
  busy(true);
  try {
    const response = await fetch("/pdf", { method: "POST", body: editor.value, headers: { "Content-Type": "application/json" } });
    if (!response.ok) { showError((await response.json()).error); return; }
    const link = document.createElement("a");
    link.href = URL.createObjectURL(await response.blob());
    link.download = (view.sample || "document") + ".pdf";
    document.body.appendChild(link);
    link.click();
    link.remove();
    setTimeout(() => URL.revokeObjectURL(link.href), 60000);
  } catch (e) {
    showError("The demonstration server did not answer: " + e);
  } finally {
    busy(false);
  }
}

// The sample list and the first sample come with the page; the list is the server's
// /samples.json, the samples of demo/samples.cpp whose files are present.
async function startDocumentView() {
  const start = JSON.parse($("start-data").textContent);
  const list = $("sample-list");
  for (const sample of start.samples) {
    const button = document.createElement("button");
    button.type = "button";
    button.textContent = sample.title;
    button.dataset.sample = sample.name;
    button.setAttribute("aria-pressed", "false");
    button.addEventListener("click", () => pickSample(sample.name, button));
    list.appendChild(button);
  }
  const first = start.first || start.samples[0];
  if (first) await pickSample(first.name, list.querySelector(`[data-sample="${first.name}"]`), first.text);
}

let editTimer = 0;
editor.addEventListener("input", () => {
  clearTimeout(editTimer);
  editTimer = setTimeout(() => printDocument(false), 400);
});
editor.addEventListener("keydown", e => {
  if (e.key === "Enter" && (e.ctrlKey || e.metaKey)) { e.preventDefault(); clearTimeout(editTimer); printDocument(false); }
});
$("print-now").addEventListener("click", () => { clearTimeout(editTimer); printDocument(false); });
$("page-prev").addEventListener("click", () => goToPage(view.page - 1));
$("page-next").addEventListener("click", () => goToPage(view.page + 1));
$("page-mode").addEventListener("click", () => { view.all = !view.all; drawPages(); });
$("zoom-in").addEventListener("click", () => zoomStep(1));
$("zoom-out").addEventListener("click", () => zoomStep(-1));
$("zoom-fit").addEventListener("click", () => setZoom("fit"));
$("download-pdf").addEventListener("click", downloadPdf);
window.addEventListener("resize", () => { if (view.zoom === "fit") rescale(); });
pagesBox.addEventListener("scroll", () => {
  if (!view.all) return;
  const top = pagesBox.getBoundingClientRect().top;
  const figures = [...pagesBox.querySelectorAll("figure")];
  const seen = figures.findLast(f => f.getBoundingClientRect().top <= top + 40);
  const page = seen ? Number(seen.dataset.page) : 1;
  if (page !== view.page) { view.page = page; updateControls(); }
});
)JS"
         R"JS(
// ---- The classic form ----
const page = $("page"), layers = $("layers"), texts = $("texts"), message = $("message");
const formButtons = Array.from(document.querySelectorAll("#buttons button"));
const classic = { presses: 0, known: 0, started: false };

function px(twips) { return twips / TWIPS_PER_PIXEL + "px"; }

function textSpan(t) {
  const span = document.createElement("span");
  span.textContent = t.text;
  span.style.left = px(t.x);
  span.style.top = px(t.y);
  span.style.fontSize = px(t.size * 20);
  if (t.bold) span.style.fontWeight = "bold";
  Object.assign(span.dataset, { layer: t.layer, print: t.print, x: t.x, y: t.y, w: t.w, size: t.size });
  return span;
}

// One span per different text on the picture; a text printed again keeps its span, which then
// belongs to the latest print that drew it.
const spansByKey = new Map();
const textKey = t => [t.x, t.y, t.size, t.bold, t.text].join("|");

function placeText(t) {
  const key = textKey(t);
  const span = spansByKey.get(key);
  if (!span) {
    const made = textSpan(t);
    spansByKey.set(key, made);
    return made;
  }
  if (Number(span.dataset.print) < t.print) span.dataset.print = t.print;
  return null;
}

// Brings the picture in line with the server's layers: a new layer is loaded, a layer gone is
// dropped. Resolves when new pictures have loaded.
function show(state) {
  page.style.width = px(state.width);
  page.style.height = px(state.height);
  page.dataset.topMargin = state.topMargin;
  const keep = new Set(state.layers.map(l => l.id));
  for (const img of [...layers.children]) if (!keep.has(Number(img.dataset.layer))) img.remove();
  const have = new Set([...layers.children].map(img => Number(img.dataset.layer)));
  const loads = [];
  for (const layer of state.layers) {
    classic.known = Math.max(classic.known, layer.id);
    if (have.has(layer.id)) continue;
    const img = new Image();
    img.alt = "";
    Object.assign(img.dataset, { layer: layer.id, print: layer.print });
    loads.push(new Promise(resolve => { img.onload = img.onerror = resolve; }));
    img.src = `/layer/${layer.id}.svg`;
    layers.appendChild(img);
  }
  const spans = document.createDocumentFragment();
  for (const t of [...state.texts, ...state.latest]) {
    const made = placeText(t);
    if (made) spans.appendChild(made);
  }
  texts.appendChild(spans);
  page.dataset.prints = state.prints;
  return Promise.all(loads);
}

async function showAll() {
  layers.replaceChildren();
  texts.replaceChildren();
  spansByKey.clear();
  classic.known = 0;
  await show(await (await fetch("/preview.json")).json());
}

function say(text, ok) {
  message.textContent = text;
  message.className = ok ? "" : "failed";
}

async function press(button) {
  busy(true);
  formButtons.forEach(b => b.disabled = true);
  try {
    const response = await fetch(`/press/${button.id}?known=${classic.known}`, { method: "POST" });
    const state = await response.json();
    say(state.message, state.ok);
    // A picture cleared here or by another window is shown again whole.
    if (state.cleared || state.prints < Number(page.dataset.prints || 0)) await showAll();
    else await show(state);
  } catch (e) {
    say("The demonstration server did not answer: " + e, false);
  } finally {
    formButtons.forEach(b => b.disabled = false);
    body.dataset.presses = ++classic.presses;
    busy(false);
    button.focus();
  }
}

async function startClassic() {
  if (classic.started) return;
  classic.started = true;
  busy(true);
  try {
    await showAll();
  } catch (e) {
    say("The demonstration server did not answer: " + e, false);
  } finally {
    busy(false);
  }
}

formButtons.forEach(b => b.addEventListener("click", () => press(b)));

// ---- Modes ----
function showMode(mode) {
  const classicMode = mode === "classic";
  $("document-view").hidden = classicMode;
  $("classic-view").hidden = !classicMode;
  $("mode-document").setAttribute("aria-pressed", String(!classicMode));
  $("mode-classic").setAttribute("aria-pressed", String(classicMode));
  if (location.hash !== "#" + mode) history.replaceState(null, "", "#" + mode);
  document.querySelector("main").scrollTop = 0;
  if (classicMode) return startClassic();
  if (view.pages.length) rescale();
}

$("mode-document").addEventListener("click", () => showMode("document"));
$("mode-classic").addEventListener("click", () => showMode("classic"));
busy(true);
Promise.all([startDocumentView(), showMode(location.hash === "#classic" ? "classic" : "document")])
  .catch(e => showError("The demonstration server did not answer: " + e))
  .finally(() => busy(false));
)JS";
}

}  // namespace quorvel::demo
