
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
const fileOf = place => place.replace(/:\d+:\d+$/, '');

// --- Search. What is searched is collected once, when there is time.
let index = null;

function collect() {
  if (index) return index;
  index = [...tree.querySelectorAll('[id]')].map(row => {
    const value = row.matches('details') ? '' : row.querySelector('bdi').textContent;
    const place = placeOf(row);
    return {id: row.id, value, place, text: (row.id + '\n' + value + '\n' + place).toLowerCase()};
  });
  return index;
}

function find() {
  const words = search.value.toLowerCase().split(/\s+/).filter(word => word);
  const file = filter.value;
  const isAsked = words.length > 0 || file !== '';
  results.hidden = !isAsked;
  for (const part of document.querySelectorAll('main')) part.hidden = isAsked;
  results.replaceChildren();
  message.textContent = '';
  if (!isAsked) return;
  const found = collect().filter(entry => words.every(word => entry.text.includes(word)) &&
      (file === '' || fileOf(entry.place) === file));
  for (const {id, value, place} of found.slice(0, mostResults)) {
    const link = linkTo(id);
    const isSection = id.endsWith('.');
    results.append(element('li', '', element('small', place), link,
                           ...(isSection ? [] : [' = ', element('bdi', value)])));
  }
  message.textContent = found.length === 0 ? 'nothing found' :
      `${found.length} found` + (found.length > mostResults ? `, the first ${mostResults} shown` : '');
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
  leaveSearch();
  for (let at = target; at; at = at.parentElement) if (at.matches('details')) at.open = true;
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
    message.textContent = text;  // not allowed here: it can be selected at least
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
    const rows = [...tree.querySelectorAll('summary, li[id]')].filter(
        other => other.checkVisibility({contentVisibilityAuto: true}));
    const next = rows[rows.indexOf(row) + (event.key === 'ArrowDown' ? 1 : -1)];
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
  search.addEventListener('focus', collect, {once: true});
  window.addEventListener('hashchange', reveal);
  results.addEventListener('click', event => {
    if (event.target.matches('a') && event.target.hash === location.hash) reveal();
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
}
