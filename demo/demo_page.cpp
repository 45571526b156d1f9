// The demonstration's web page: inline HTML and CSS (the script is in demo_script.cpp), nothing fetched from elsewhere.
#include "demo/demo_page.hpp"

#include <nlohmann/json.hpp>

#include "demo/demo_form.hpp"
#include "demo/document_view.hpp"
#include "foundation/markup_text.hpp"

namespace quorvel::demo {

namespace {

// Two modes under one header. The document view prints a sample or the JSON in the editor on
// the printer and shows its pages as SVG pictures. The classic form is the old test bench: eight
// buttons printing on one page picture shown at 96 pixels an inch (15 twips a pixel), with each
// layer of the picture a transparent SVG and a transparent text layer on top carrying each
// text's twips as data attributes (the SVG draws glyphs as paths).
constexpr const char* kPage = R"HTML(<!doctype html>
<html lang="en">
<head>
<meta charset="utf-8">
<meta name="viewport" content="width=device-width, initial-scale=1">
<title>Quorvel demonstration</title>
<style>
  :root { --ink: #1f2933; --muted: #52606d; --line: #d3d8de; --paper-bg: #e4e7eb; --accent: #2f5d8a;
          --accent-soft: #e6eef6; --bad: #9b1c1c; --bad-soft: #fdecec; }
  * { box-sizing: border-box; }
  html, body { height: 100%; }
  body { margin: 0; color: var(--ink); background: #f5f7fa; font: 15px/1.4 "Liberation Sans", Arial, sans-serif;
         display: flex; flex-direction: column; min-width: 320px; }
  button, textarea, select { font: inherit; color: inherit; }
  button { border: 1px solid var(--line); background: #fff; border-radius: 6px; padding: 6px 12px; cursor: pointer; }
  button:hover:not(:disabled) { border-color: var(--accent); }
  button:disabled { opacity: .55; cursor: default; }
  button[aria-pressed="true"] { background: var(--accent); border-color: var(--accent); color: #fff; }
  :focus-visible { outline: 3px solid #f0b429; outline-offset: 2px; }
  header { display: flex; flex-wrap: wrap; align-items: center; gap: 8px 20px; padding: 10px 16px;
           background: #fff; border-bottom: 1px solid var(--line); }
  header h1 { margin: 0; font-size: 19px; }
  header h1 span { color: var(--muted); font-weight: normal; }
  #modes { display: flex; gap: 6px; }
  #busy { margin-left: auto; color: var(--muted); font-size: 14px; visibility: hidden; }
  body[data-state="busy"] #busy { visibility: visible; }
  #busy::before { content: ""; display: inline-block; width: 10px; height: 10px; margin-right: 6px;
                  border: 2px solid var(--accent); border-right-color: transparent; border-radius: 50%;
                  animation: spin .8s linear infinite; vertical-align: -1px; }
  @keyframes spin { to { transform: rotate(360deg); } }
  main { flex: 1; min-height: 0; display: flex; }
  section[hidden] { display: none !important; }

  /* The document view: samples, pages, editor side by side; stacked on a narrow screen. */
  #document-view { flex: 1; min-width: 0; display: grid; grid-template-columns: 200px minmax(0, 1fr) minmax(280px, 30%); }
  #samples { padding: 14px; border-right: 1px solid var(--line); background: #fff; overflow-y: auto; }
  #samples h2, #editor-pane h2 { margin: 0 0 8px; font-size: 13px; text-transform: uppercase; letter-spacing: .05em; color: var(--muted); }
  #sample-list { display: flex; flex-direction: column; gap: 6px; }
  #sample-list button { text-align: left; }
  #viewer { display: flex; flex-direction: column; min-width: 0; min-height: 0; }
  #toolbar { display: flex; flex-wrap: wrap; align-items: center; gap: 6px 14px; padding: 8px 14px;
             background: #fff; border-bottom: 1px solid var(--line); }
  #toolbar .group { display: flex; align-items: center; gap: 6px; }
  #toolbar output { min-width: 92px; text-align: center; color: var(--muted); }
  #zoom-level { min-width: 48px !important; }
  #downloads { margin-left: auto; }
  #downloads a { color: var(--accent); }
  #pages { position: relative; flex: 1; min-height: 0; overflow: auto; background: var(--paper-bg); padding: 18px; }
  #pages figure { margin: 0 auto 18px; width: fit-content; }
  #pages img { display: block; background: #fff; box-shadow: 0 1px 4px rgba(0, 0, 0, .25); }
  #pages figcaption { text-align: center; font-size: 13px; color: var(--muted); margin-top: 6px; }
  #pages[aria-busy="true"] img { opacity: .6; transition: opacity .2s; }
  #editor-pane { display: flex; flex-direction: column; gap: 8px; padding: 14px; border-left: 1px solid var(--line);
                 background: #fff; min-height: 0; }
  #editor-pane label { font-weight: bold; }
  #editor-pane .hint { margin: 0; color: var(--muted); font-size: 13px; }
  #editor { flex: 1; min-height: 160px; width: 100%; resize: vertical; padding: 8px; border: 1px solid var(--line);
            border-radius: 6px; font: 13px/1.45 "Liberation Mono", monospace; tab-size: 2; white-space: pre; }
  #editor[aria-invalid="true"] { border-color: var(--bad); }
  #doc-error { margin: 0; padding: 8px 10px; border-radius: 6px; background: var(--bad-soft); color: var(--bad);
               border: 1px solid #f3b8b8; white-space: pre-wrap; word-break: break-word; font-size: 13px; }
  #doc-error[hidden] { display: none; }

  /* The classic form: eight buttons beside a page picture in a scrolling frame. */
  #classic-view { flex: 1; min-width: 0; display: flex; gap: 14px; padding: 14px; align-items: flex-start; }
  #classic-view .intro { margin: 0 0 10px; color: var(--muted); font-size: 13px; }
  #buttons { display: flex; flex-direction: column; gap: 6px; width: 150px; flex: none; }
  #buttons button { height: 34px; }
  #classic-main { min-width: 0; flex: 1; }
  #status { min-height: 22px; margin-bottom: 6px; display: flex; flex-wrap: wrap; gap: 4px 12px; }
  #message.failed { color: var(--bad); font-weight: bold; }
  #whole { font-size: 13px; color: var(--accent); }
  #frame { height: calc(100vh - 150px); min-height: 240px; max-width: 100%; width: fit-content; overflow-x: auto;
           overflow-y: scroll; background: var(--paper-bg); border: 1px solid var(--line); }
  #page { position: relative; background: #fff; }
  #layers img, #texts { position: absolute; left: 0; top: 0; width: 100%; height: 100%; }
  #texts { overflow: hidden; }
  #texts span { position: absolute; white-space: pre; color: transparent; line-height: 1;
                font-family: "Liberation Sans", Arial, sans-serif; }

  /* A narrow screen scrolls as one column: samples, pages, editor. */
  @media (max-width: 1000px) {
    main { display: block; overflow-y: auto; }
    #document-view { display: block; }
    #samples { border-right: 0; border-bottom: 1px solid var(--line); }
    #sample-list { flex-direction: row; flex-wrap: wrap; }
    #pages { height: calc(100vh - 150px); min-height: 300px; }
    #editor-pane { border-left: 0; border-top: 1px solid var(--line); }
    #editor { min-height: 300px; }
    #classic-view { flex-direction: column; }
    #buttons { flex-direction: row; flex-wrap: wrap; width: auto; }
    #buttons button { height: auto; }
    #frame { height: calc(100vh - 130px); }
  }
</style>
</head>
<body data-state="loading" data-presses="0" data-renders="0">
<header>
  <h1>Quorvel <span>document printing demonstration</span></h1>
  <nav id="modes" aria-label="Mode">
    <button type="button" id="mode-document" aria-pressed="true">Document view</button>
    <button type="button" id="mode-classic" aria-pressed="false">Classic form</button>
  </nav>
  <div id="busy" role="status" aria-live="polite">Printing…</div>
</header>
<main>
<section id="document-view" aria-label="Document view">
  <div id="samples">
    <h2 id="samples-heading">Samples</h2>
    <div id="sample-list" role="group" aria-labelledby="samples-heading"></div>
  </div>
  <div id="viewer">
    <div id="toolbar" role="toolbar" aria-label="Pages">
      <div class="group">
        <button type="button" id="page-prev" aria-label="Previous page">‹ Prev</button>
        <output id="page-label" aria-live="polite">Page 0 of 0</output>
        <button type="button" id="page-next" aria-label="Next page">Next ›</button>
        <button type="button" id="page-mode" aria-pressed="false">One page at a time</button>
      </div>
      <div class="group">
        <button type="button" id="zoom-out" aria-label="Zoom out">−</button>
        <output id="zoom-level">100%</output>
        <button type="button" id="zoom-in" aria-label="Zoom in">+</button>
        <button type="button" id="zoom-fit" aria-pressed="true">Fit width</button>
      </div>
      <div class="group" id="downloads">
        <button type="button" id="download-pdf">Download PDF</button>
        <a id="download-ops" href="#" download="quorvel-document.jsonl">ops</a>
      </div>
    </div>
    <div id="pages" tabindex="0" aria-label="Printed pages" aria-busy="false"></div>
  </div>
  <div id="editor-pane">
    <h2>Document</h2>
    <label for="editor">Document JSON</label>
    <p class="hint" id="editor-hint">Edit the document and its pages follow; Ctrl+Enter prints at once.</p>
    <textarea id="editor" spellcheck="false" aria-describedby="editor-hint doc-error"></textarea>
    <pre id="doc-error" role="alert" hidden></pre>
    <button type="button" id="print-now">Print</button>
  </div>
</section>
<section id="classic-view" aria-label="Classic form" hidden>
  <div id="buttons" role="group" aria-label="Print a sample">
<!--BUTTONS-->
  </div>
  <div id="classic-main">
    <p class="intro">Every print lands on the same picture, over the last, as on the original form;
      "Set Co Info" moves every later print 500 twips down.</p>
    <div id="status"><span id="message" role="status">Press a button to print its sample on the page.</span>
      <a id="whole" href="/preview.svg" target="_blank">the page as SVG</a></div>
    <div id="frame" tabindex="0" aria-label="The picture"><div id="page"><div id="layers"></div><div id="texts"></div></div></div>
  </div>
</section>
</main>
<script type="application/json" id="start-data"><!--START--></script>
<script>
<!--SCRIPT-->
</script>
</body>
</html>
)HTML";

void Replace(std::string& page, const std::string& mark, const std::string& text) {
  page.replace(page.find(mark), mark.size(), text);
}

// The sample list and the first sample's text ride in the page, so that the first picture needs
// one request less each. "</" is written "<\/" (the same in JSON) so no text can end the script.
std::string StartData() {
  using nlohmann::json;
  json samples = json::array();
  json first = nullptr;
  for (const ViewSample& sample : ViewSamples()) {
    samples.push_back({{"name", sample.name}, {"title", sample.title}});
    if (sample.name == "invoice") first = {{"name", sample.name}, {"text", SampleText(sample.name)}};
  }
  std::string data = json{{"samples", samples}, {"first", first}}.dump(-1, ' ', false, json::error_handler_t::replace);
  for (size_t at = data.find("</"); at != std::string::npos; at = data.find("</", at + 3)) data.insert(at + 1, "\\");
  return data;
}

}  // namespace

std::string DemoPage() {
  std::string items;
  for (const FormButton& b : FormButtons())
    items += "    <button type=\"button\" id=\"" + b.control + "\" data-sample=\"" + MarkupEscaped(b.sample) + "\">" +
             MarkupEscaped(b.caption) + "</button>\n";
  std::string page = kPage;
  Replace(page, "<!--BUTTONS-->\n", items);
  Replace(page, "<!--START-->", StartData());
  Replace(page, "<!--SCRIPT-->\n", DemoScript());
  return page;
}

}  // namespace quorvel::demo
