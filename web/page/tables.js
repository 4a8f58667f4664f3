// The view of tables: rows, a form to change one or to add one, delete.
import {ask, newest, part} from './api.js';
import {attempt, byId, inputFor, make, newId} from './dom.js';

let table = null;  // the description with the rows

const can = (what) => table.can.includes(what);
const address = (index) => `/api/tables/${part(table.name)}${index === undefined ? '' : `/${index}`}`;
const plain = () => table.columns.filter((column) => column.aliasOf === undefined);

// What the fields hold that differs from what the row had.
function changes(fields, row) {
  const values = {};
  for (const [name, input] of fields) if (input.value !== (row?.columns[name] ?? '')) values[name] = input.value;
  return values;
}

// A form for all columns: of a row, or of a new one.
function rowForm(row) {
  const fields = new Map();
  const wrong = make('p', {class: 'wrong', role: 'alert'});
  const cells = plain().filter((column) => column.writable).map((column) => {
    const id = newId();
    const input = inputFor(column, row?.columns[column.name] ?? '', {id, title: `Takes ${column.accepts}`});
    fields.set(column.name, input);
    return make('div', {}, make('label', {for: id}, column.name), input);
  });
  const send = () => row ? ask('PATCH', address(row.index), changes(fields, row)) : ask('POST', address(), changes(fields));
  const form = make('form', {class: 'row-form', onsubmit: async (event) => {
    event.preventDefault();
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

function rowLine(row) {
  const buttons = make('td', {class: 'line'},
    can('set') ? make('button', {'aria-label': `Edit row ${row.index}`, onclick: () => openForm(row)}, 'Edit') : null,
    can('delete') ? make('button', {'aria-label': `Delete row ${row.index}`, onclick: async () => {
      if (await attempt(wrong, () => ask('DELETE', address(row.index)))) await read();
    }}, 'Delete') : null);
  return make('tr', {}, make('td', {}, String(row.index)), ...plain().map((column) => make('td', {}, row.columns[column.name] ?? '')), buttons);
}

const wrong = make('p', {class: 'wrong', role: 'alert'});

function rowLines() {
  const head = make('tr', {}, make('th', {}, 'Row'), ...plain().map((column) => make('th', {title: column.meaning ?? ''}, column.name)), make('th'));
  return [make('p', {class: 'soft'}, `${table.meaning ? `${table.meaning} ` : ''}${table.rows.length} of at most ${table.maxRows} rows.`),
    make('div', {class: 'wide', tabindex: '0', role: 'region', 'aria-label': `Rows of ${table.name}`},
      make('table', {}, make('thead', {}, head), make('tbody', {}, ...table.rows.map(rowLine))))];
}

function draw() {
  byId('rows').replaceChildren(...rowLines(), can('add') ? make('button', {onclick: () => openForm(null)}, 'Add a row') : '', wrong);
}

// A form that is open stays when rows of its table have changed.
const take = newest(() => ask('GET', `/api/tables/${part(byId('table').value)}`), (answer) => {
  const isShown = table?.name === answer.name;
  table = answer;
  wrong.textContent = '';
  if (isShown) rowLines().forEach((line, place) => byId('rows').children[place].replaceWith(line));
  else draw();
});

async function read() {
  try {
    await take();
  } catch (error) {
    if (table?.name !== byId('table').value) {
      table = null;
      byId('rows').replaceChildren(wrong);
    }
    wrong.textContent = error.message;
  }
}

// Somebody has changed rows of a table, or of any.
export function rowsChanged({table: name}) {
  if (table !== null && (name ?? table.name) === table.name) read();
}

export async function startTables() {
  const {tables} = await ask('GET', '/api/tables');
  byId('table').append(...tables.filter((one) => one.can.includes('list')).map((one) => make('option', {value: one.name}, one.name)));
  byId('table').addEventListener('change', read);
}

export const openTables = () => table === null ? read() : undefined;
