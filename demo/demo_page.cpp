// The demonstration form's web page: inline HTML, CSS and script, nothing fetched from elsewhere.
#include "demo/demo_page.hpp"

#include "demo/demo_form.hpp"

namespace quorvel::demo {

namespace {

// The page is drawn at 96 pixels an inch: 15 twips a pixel, so the page picture is printer size.
// Each print is one transparent SVG laid over the earlier ones, so a press loads only what it
// drew. A transparent text layer lies on top: each text where the picture draws it, with its
// twips and the print that drew it as data attributes (the SVG draws glyphs as paths).
constexpr const char* kPage = R"HTML(<!doctype html>
<html lang="en">
<head>
<meta charset="utf-8">
<title>Quorvel demonstration</title>
<style>
  body { margin: 0; background: #d4d0c8; font: 14px "Liberation Sans", Arial, sans-serif; }
  #form { display: flex; gap: 12px; padding: 12px; align-items: flex-start; }
  #buttons { display: flex; flex-direction: column; gap: 6px; width: 140px; }
  #buttons button { height: 34px; font: inherit; cursor: pointer; }
  #buttons button:disabled { cursor: progress; }
  #status { min-height: 20px; margin-bottom: 6px; }
  #message.failed { color: #a00000; font-weight: bold; }
  #frame { height: calc(100vh - 70px); min-height: 240px; width: fit-content; overflow-x: hidden;
           overflow-y: scroll; background: #808080; border: 2px inset #ffffff; }
  #page { position: relative; background: #ffffff; }
  #layers img, #texts { position: absolute; left: 0; top: 0; width: 100%; height: 100%; }
  #texts { overflow: hidden; }
  #whole { font-size: 12px; margin-left: 12px; }
  #texts span { position: absolute; white-space: pre; color: transparent; line-height: 1;
                font-family: "Liberation Sans", Arial, sans-serif; }
</style>
</head>
<body data-state="loading" data-presses="0">
<div id="form">
  <div id="buttons">
<!--BUTTONS-->
  </div>
  <div>
    <div id="status"><span id="message" role="status">Press a button to print its sample on the page.</span>
      <a id="whole" href="/preview.svg" target="_blank">the page as SVG</a></div>
    <div id="frame"><div id="page"><div id="layers"></div><div id="texts"></div></div></div>
  </div>
</div>
<script>
"use strict";
const TWIPS_PER_PIXEL = 15;
const page = document.getElementById("page");
const layers = document.getElementById("layers");
const texts = document.getElementById("texts");
const message = document.getElementById("message");
const buttons = Array.from(document.querySelectorAll("#buttons button"));
let presses = 0;
let shown = 0;  // prints on the page

function px(twips) { return twips / TWIPS_PER_PIXEL + "px"; }

function textSpan(t) {
  const span = document.createElement("span");
  span.textContent = t.text;
  span.style.left = px(t.x);
  span.style.top = px(t.y);
  span.style.fontSize = px(t.size * 20);
  if (t.bold) span.style.fontWeight = "bold";
  Object.assign(span.dataset, { print: t.print, x: t.x, y: t.y, w: t.w, size: t.size });
  return span;
}

function clearPage() {
  layers.replaceChildren();
  texts.replaceChildren();
  shown = 0;
}

// Lays the prints the page does not have yet over it, with their texts; resolves when their
// pictures have loaded.
function show(state) {
  page.style.width = px(state.width);
  page.style.height = px(state.height);
  page.dataset.topMargin = state.topMargin;
  const spans = document.createDocumentFragment();
  for (const t of state.texts) spans.appendChild(textSpan(t));
  texts.appendChild(spans);
  const loads = [];
  for (let print = shown + 1; print <= state.prints; print++) {
    const img = new Image();
    img.alt = "print " + print;
    img.dataset.print = print;
    loads.push(new Promise(resolve => { img.onload = img.onerror = resolve; }));
    img.src = "/print/" + print + ".svg";
    layers.appendChild(img);
  }
  shown = state.prints;
  page.dataset.prints = state.prints;
  return Promise.all(loads);
}

async function showAll() {
  clearPage();
  await show(await (await fetch("/preview.json")).json());
}

function say(text, ok) {
  message.textContent = text;
  message.className = ok ? "" : "failed";
}

async function press(button) {
  document.body.dataset.state = "busy";
  buttons.forEach(b => b.disabled = true);
  try {
    const response = await fetch("/press/" + button.id + "?shown=" + shown, { method: "POST" });
    const state = await response.json();
    say(state.message, state.ok);
    // A picture cleared here or by another window is shown again whole.
    if (state.cleared || state.prints < shown) await showAll();
    else await show(state);
  } catch (e) {
    say("The demonstration server did not answer: " + e, false);
  } finally {
    buttons.forEach(b => b.disabled = false);
    document.body.dataset.presses = ++presses;
    document.body.dataset.state = "ready";
  }
}

buttons.forEach(b => b.addEventListener("click", () => press(b)));
showAll().catch(e => say("The demonstration server did not answer: " + e, false))
  .finally(() => { document.body.dataset.state = "ready"; });
</script>
</body>
</html>
)HTML";

std::string Escaped(const std::string& text) {
  std::string out;
  for (char c : text) {
    switch (c) {
      case '&': out += "&amp;"; break;
      case '<': out += "&lt;"; break;
      case '>': out += "&gt;"; break;
      case '"': out += "&quot;"; break;
      default: out += c;
    }
  }
  return out;
}

}  // namespace

std::string DemoPage() {
  std::string items;
  for (const FormButton& b : FormButtons())
    items += "    <button id=\"" + b.control + "\" data-sample=\"" + Escaped(b.sample) + "\">" +
             Escaped(b.caption) + "</button>\n";
  std::string page = kPage;
  const std::string mark = "<!--BUTTONS-->\n";
  page.replace(page.find(mark), mark.size(), items);
  return page;
}

}  // namespace quorvel::demo
