// The view of tables: rows, a form to change one or to add one, delete.
import {ask, newest, part} from './api.js';
import {attempt, byId, inputFor, make, newId, sure} from './dom.js';

let table = null;           // the description with the rows
let opened = false;         // the view was looked at
let body = null;            // of the table that is shown
const lines = new Map();    // by index: the lines of its rows
const owners = new Map();   // by table: the one whose rows it has

const count = make('p', {class: 'soft'});
const unread = make('p', {class: 'wrong', role: 'alert'});  // why the table could not be read
const wrong = make('p', {class: 'wrong', role: 'alert'});   // why a row was not deleted

const can = (what) => table.can.includes(what);
const address = (index) => `/api/tables/${part(table.name)}${index === undefined ? '' : `/${index}`}`;
const plain = () => table.columns.filter((column) => column.aliasOf === undefined);
const ownerOf = (name) => owners.get(name) ?? name;

// A form for all columns: of a row, or of a new one. The field of a secret is empty, and leaves it as it is.
function rowForm(row) {
  const fields = new Map();
  const to = address(row?.index);
  const wrong = make('p', {class: 'wrong', role: 'alert'});
  const cells = plain().filter((column) => column.writable).map((column) => {
    const id = newId();
    const input = inputFor(column, column.secret ? '' : row?.columns[column.name] ?? '',
      {id, title: `Takes ${column.accepts}`, placeholder: row && column.secret ? 'unchanged' : undefined});
    fields.set(column.name, {input, start: input.value});
    return make('div', {}, make('label', {for: id}, column.name), input);
  });
  async function send() {
    const typed = [...fields].filter(([, {input, start}]) => input.value !== start);
    if (row && typed.length === 0) throw new Error('Nothing has changed.');
    await ask(row ? 'PATCH' : 'POST', to, Object.fromEntries(typed.map(([name, {input}]) => [name, input.value])));
  }
  const form = make('form', {class: 'row-form', onsubmit: async () => {
    if (!await attempt(wrong, send)) return;
    form.remove();
    await read();
  }}, make('h3', {}, row ? `Row ${row.index}` : 'New row'), table.accepts ? make('p', {class: 'soft'}, `The table takes ${table.accepts}.`) : null,
  make('div', {class: 'pair'}, ...cells),
  make('div', {class: 'line'}, make('button', {class: 'main'}, row ? 'Set' : 'Add'), make('button', {type: 'button', onclick: () => form.remove()}, 'Leave')), wrong);
  return form;
}

function openForm(row) {
  byId('rows').querySelector('form')?.remove();
  const form = rowForm(row);
  byId('rows').append(form);
  form.querySelector('input, select')?.focus();
}

function newLine(index) {
  const line = {row: null, cells: plain().map(() => make('td'))};
  line.element = make('tr', {}, make('td', {}, String(index)), ...line.cells, make('td', {class: 'line'},
    can('set') ? make('button', {'aria-label': `Edit row ${index}`, onclick: () => openForm(line.row)}, 'Edit') : null,
    can('delete') ? sure('Delete', `Delete row ${index}`, async () => {
      if (await attempt(wrong, () => ask('DELETE', address(index)))) await read();
    }) : null));
  return line;
}

function showRow(row, place) {
  if (!lines.has(row.index)) lines.set(row.index, newLine(row.index));
  const line = lines.get(row.index);
  line.row = row;
  plain().forEach((column, i) => {
    const text = row.columns[column.name] ?? '';
    if (line.cells[i].textContent !== text) line.cells[i].textContent = text;
  });
  if (body.children[place] !== line.element) body.insertBefore(line.element, body.children[place] ?? null);
}

// A row that stays keeps its elements: focus, pointer and a pressed button stay on the same row.
function showRows() {
  count.textContent = `${table.meaning ? `${table.meaning} ` : ''}${table.rows.length} of at most ${table.maxRows} rows.`;
  const there = new Set(table.rows.map((row) => row.index));
  for (const [index, line] of lines)
    if (!there.has(index)) {
      line.element.remove();
      lines.delete(index);
    }
  table.rows.forEach(showRow);
}

function draw() {
  lines.clear();
  wrong.textContent = '';
  body = make('tbody');
  const head = make('tr', {}, make('th', {}, 'Row'), ...plain().map((column) => make('th', {title: column.meaning ?? ''}, column.name)), make('th'));
  byId('rows').replaceChildren(count,
    make('div', {class: 'wide', tabindex: '0', role: 'region', 'aria-label': `Rows of ${table.name}`}, make('table', {}, make('thead', {}, head), body)),
    can('add') ? make('button', {onclick: () => openForm(null)}, 'Add a row') : '', unread, wrong);
}

// A form that is open stays when rows of its table have changed.
const take = newest((name) => ask('GET', `/api/tables/${part(name)}`), (answer) => {
  const isShown = table?.name === answer.name;
  table = answer;
  unread.textContent = '';
  if (!isShown) draw();
  showRows();
  byId('rows').inert = false;
});

// Until another table has come, the rows of the one before cannot be clicked.
async function read() {
  const name = byId('table').value;
  byId('rows').inert = table !== null && table.name !== name;
  try {
    await take(name);
  } catch (error) {
    if (table?.name !== name) {
      table = null;
      byId('rows').replaceChildren(unread);
    }
    byId('rows').inert = false;
    unread.textContent = error.message;
  }
}

// Somebody has changed rows of a table, or of any.
export function rowsChanged({table: name}) {
  if (opened && (name === undefined || ownerOf(name) === ownerOf(byId('table').value))) read();
}

export async function startTables() {
  const {tables} = await ask('GET', '/api/tables');
  for (const one of tables) if (one.sameRowsAs) owners.set(one.name, one.sameRowsAs);
  byId('table').append(...tables.filter((one) => one.can.includes('list')).map((one) => make('option', {value: one.name}, one.name)));
  byId('table').addEventListener('change', read);
}

export function openTables() {
  opened = true;
  return table === null ? read() : undefined;
}
