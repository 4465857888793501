
'use strict';
// What the page does beyond showing: search, filter, explain, keys. Everything that it shows is put
// in as text, never as markup.
const mostResults = 200;
const form = document.getElementById('-form');
const search = document.getElementById('-search');
const filter = document.getElementById('-filter');
const results = document.getElementById('-results');
const message = document.getElementById('-status');
const tree = form && document.querySelector('.tree');
const data = document.getElementById('-data');

function element(name, text, ...children) {
  const made = document.createElement(name);
  made.textContent = text;
  made.append(...children);
  return made;
}

function linkTo(id) {
  const link = element('a', id);
  link.href = '#' + encodeURIComponent(id);
  return link;
}

// The parts of a row, whether it is a value or a section.
const head = row => row.matches('details') ? row.firstElementChild : row;
const placeOf = row => head(row).querySelector('a, i')?.textContent ?? '';

// --- Search. What is searched is collected in short steps, between which the page can be used.
const rows = tree ? tree.querySelectorAll('[id]') : [];
const index = [];  // of rows, as far as it has come
const stepTime = 12;  // ms

function collect() {
  const end = performance.now() + stepTime;
  while (index.length < rows.length && performance.now() < end) {
    const row = rows[index.length];
    const second = head(row).firstElementChild.nextElementSibling;
    const [value, where] = row === head(row) ? [second.textContent, second.nextElementSibling] : ['', second];
    const place = where?.matches('a, i') ? where.textContent : '';
    index.push({id: row.id, value, place, text: `${row.id}\n${value}\n${place}`.toLowerCase()});
  }
  if (index.length < rows.length) setTimeout(collect);
  else if (document.body.classList.contains('asked')) find();
}

function find() {
  const words = search.value.toLowerCase().split(/\s+/).filter(word => word);
  const file = filter.value && filter.value + ':';
  const isAsked = words.length > 0 || file !== '';
  results.hidden = !isAsked;
  document.body.classList.toggle('asked', isAsked);
  message.textContent = '';
  if (!isAsked) return;
  const found = index.filter(entry => words.every(word => entry.text.includes(word)) &&
      entry.place.startsWith(file));
  results.replaceChildren(...found.slice(0, mostResults).map(({id, value, place}) => {
    const isSection = id.endsWith('.');
    return element('li', '', linkTo(id), ...(isSection ? [] : [' = ', element('bdi', value)]),
                   element('small', place));
  }));
  message.textContent = (found.length === 0 ? 'nothing' : found.length) + ' found' +
      (index.length < rows.length ? ' so far' : '') +
      (found.length > mostResults ? `, the first ${mostResults} shown` : '');
}

function leaveSearch() {
  search.value = '';
  filter.value = '';
  find();
}

// Opens what is around the element that the address names. A selector may hold any character.
function reveal() {
  let id = location.hash.slice(1);
  try {
    id = decodeURIComponent(id);
  } catch { /* it stands as it is */ }
  const target = id && document.getElementById(id);
  if (!target) return;
  for (let at = target; at; at = at.parentElement) if (at.matches('details')) at.open = true;
  leaveSearch();
  target.scrollIntoView({block: 'center'});
  const focused = target.matches('details') ? target.firstElementChild : target;
  if (!focused.matches('summary')) focused.tabIndex = -1;
  focused.focus({preventScroll: true});
}

// --- Explain.
async function copy(text) {
  try {
    await navigator.clipboard.writeText(text);
    message.textContent = 'copied: ' + text;
  } catch {
    message.textContent = 'selector: ' + text;  // not allowed here: it can be selected at least
  }
}

function section(box, title, lines) {
  if (lines.length) box.append(element('h3', title), ...lines.map(line => element('p', '', ...line)));
}

// The files on the way to the value, outermost first, each with its include.
function chainOf(row) {
  const {readings} = JSON.parse(data.textContent);
  const link = row.querySelector('a');
  const number = Number(link.hash.match(/\d+$/)[0]);
  let at = row.dataset.reading ? readings[row.dataset.reading] :
      readings.find(reading => reading.file === number);
  const lines = [];
  for (; at; at = readings[at.by]) {
    const entry = document.getElementById('-file-' + at.file);
    const line = linkTo(entry.id);
    line.textContent = entry.querySelector('b').textContent;
    const where = [...entry.querySelectorAll('li')].map(item => item.textContent.trim())
        .filter(text => !text.startsWith('included as'));
    lines.unshift([line, (at.at ? `  included at ${at.at}` : '') + '  ' + where.join(', ')]);
  }
  return lines;
}

function explain(row) {
  const shown = row.querySelector('.explain');
  if (shown) return shown.remove();
  const box = element('div', '');
  box.className = 'explain';
  box.setAttribute('role', 'region');
  box.setAttribute('aria-label', 'Where ' + row.id + ' comes from');
  section(box, 'selector', [[row.id]]);
  section(box, 'set at', [[placeOf(row)]]);
  section(box, 'read from', chainOf(row));
  const sections = [];
  for (let at = row.parentElement; at !== tree; at = at.parentElement) {
    if (at.matches('details')) sections.unshift([linkTo(at.id), '  ' + placeOf(at)]);
  }
  section(box, 'sections on the way', sections);
  const base = row.id.replace(/\[\d+\]$/, '');
  const others = base === row.id ? [] :
      [...row.parentElement.children].filter(other => other.id.replace(/\[\d+\]$/, '') === base);
  section(box, 'all values of that name', others.slice(0, 20).map(
      other => [linkTo(other.id), ' = ' + other.querySelector('bdi').textContent]));
  row.append(box);
  copy(row.id);
}

// --- Keys: arrows go through what is open, as in other trees.
function move(event) {
  const row = event.target.closest('summary, li[id]');
  if (!row || event.target.closest('.explain')) return;
  const details = row.closest('details');
  if (event.key === 'ArrowRight' && row.matches('summary')) details.open = true;
  else if (event.key === 'ArrowLeft' && details) {
    if (row.matches('summary')) details.open = false;
    else details.firstElementChild.focus();
  } else if (event.key === 'ArrowDown' || event.key === 'ArrowUp') {
    const walker = document.createTreeWalker(tree, NodeFilter.SHOW_ELEMENT, node =>
        node.matches('details:not([open]) > ul, .explain') ? NodeFilter.FILTER_REJECT :
        node.matches('summary, li[id]') ? NodeFilter.FILTER_ACCEPT : NodeFilter.FILTER_SKIP);
    walker.currentNode = row;
    const next = event.key === 'ArrowDown' ? walker.nextNode() : walker.previousNode();
    if (!next) return;
    if (!next.matches('summary')) next.tabIndex = -1;
    next.focus();
  } else if (event.key === 'Enter' && event.target.matches('li[id]')) explain(row);
  else return;
  event.preventDefault();
}

if (tree) {
  document.documentElement.className = 'scripted';
  form.hidden = false;
  search.addEventListener('input', find);
  filter.addEventListener('change', find);
  form.addEventListener('submit', event => event.preventDefault());
  window.addEventListener('hashchange', reveal);
  results.addEventListener('click', event => {
    if (!event.target.matches('a')) return;
    leaveSearch();
    if (event.target.hash === location.hash) reveal();
  });
  tree.addEventListener('click', event => {
    const value = event.target.closest('bdi');
    if (value && !event.target.closest('.explain') && getSelection().isCollapsed) {
      explain(value.closest('li'));
    }
  });
  tree.addEventListener('keydown', move);
  document.addEventListener('keydown', event => {
    if (event.key === '/' && !event.target.matches('input, select')) {
      event.preventDefault();
      search.focus();
    } else if (event.key === 'Escape' && !results.hidden) leaveSearch();
  });
  reveal();
  setTimeout(collect);
}
